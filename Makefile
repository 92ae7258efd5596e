# The two commands of the README:
#   make demo   set up the machine, build, and render the demo phrase to build/demo.wav
#   make test   set up the machine, build, and run every test (unit, ThreadSanitizer stress, fuzzers)
BUILD      ?= build
BUILD_TSAN ?= build-tsan
BUILD_FUZZ ?= build-fuzz
FUZZ_SECONDS ?= 60
JOBS       ?= $(shell nproc)

.PHONY: all setup configure build demo test unit-tests tsan-tests fuzz-tests skin clean

all: build

setup:
	@tools/setup-machine.sh

configure: setup
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	$(BUILD)/tolvane2-render --out $(BUILD)/demo.wav

test: build unit-tests tsan-tests fuzz-tests
	@echo "All tests passed."

unit-tests:
	cd $(BUILD) && ctest --output-on-failure

tsan-tests: setup
	@cmake -S . -B $(BUILD_TSAN) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTOLVANE_SANITIZE=thread \
	  -DTOLVANE_EDITOR=OFF -DTOLVANE_BENCH=OFF >/dev/null
	@cmake --build $(BUILD_TSAN) -j $(JOBS) --target tolvane2_stress_tests
	TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" $(BUILD_TSAN)/tests/tolvane2_stress_tests

fuzz-tests: setup
	@CC=clang CXX=clang++ cmake -S . -B $(BUILD_FUZZ) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTOLVANE_FUZZ=ON \
	  -DTOLVANE_TESTS=OFF -DTOLVANE_BENCH=OFF -DTOLVANE_EDITOR=OFF >/dev/null
	@cmake --build $(BUILD_FUZZ) -j $(JOBS) --target fuzzers
	@fuzz/run-all.sh $(BUILD_FUZZ)/fuzz $(FUZZ_SECONDS)

clean:
	rm -rf $(BUILD) $(BUILD_TSAN) $(BUILD_FUZZ)

# Redraw the editor's bitmaps into resources/ (needs Cairo).
skin: configure
	@cmake --build $(BUILD) --target skin

# The two commands of the README:
#   make demo   set up the machine, build, and render the demo phrase to build/demo.wav
#   make test   set up the machine, build, and run every test (unit, ThreadSanitizer stress, fuzzers, Windows)
#   make windows  set up the machine and build the Windows DLLs: build-win32/Tolvane2.dll, build-win64/Tolvane2.dll
BUILD      ?= build
BUILD_WIN32 ?= build-win32
BUILD_WIN64 ?= build-win64
BUILD_TSAN ?= build-tsan
BUILD_FUZZ ?= build-fuzz
FUZZ_SECONDS ?= 60
JOBS       ?= $(shell nproc)

.PHONY: all setup configure build demo test unit-tests tsan-tests fuzz-tests windows windows-tests skin clean

all: build

setup:
	@tools/setup-machine.sh

configure: setup
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	$(BUILD)/tolvane2-render --out $(BUILD)/demo.wav

test: build unit-tests tsan-tests fuzz-tests windows-tests
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

# The Windows DLLs, cross-compiled with mingw-w64: 32-bit (i686, SSE2) and 64-bit.
windows: setup
	@cmake -S . -B $(BUILD_WIN32) -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-i686.cmake -DCMAKE_BUILD_TYPE=Release \
	  -DTOLVANE_TESTS=OFF >/dev/null
	@cmake --build $(BUILD_WIN32) -j $(JOBS) --target Tolvane2
	@cmake -S . -B $(BUILD_WIN64) -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-x86_64.cmake -DCMAKE_BUILD_TYPE=Release \
	  -DTOLVANE_LINUX_BUILD=$(abspath $(BUILD)) -DTOLVANE_WIN32_DLL=$(abspath $(BUILD_WIN32))/Tolvane2.dll >/dev/null
	@cmake --build $(BUILD_WIN64) -j $(JOBS) --target Tolvane2

# Both DLLs checked, the 64-bit one run under wine64: unit tests, audio against the Linux build (which
# `build` makes), the editor on a private Xvfb.
windows-tests: build windows
	@cmake --build $(BUILD_WIN64) -j $(JOBS) --target tolvane2_tests
	cd $(BUILD_WIN64) && ctest --output-on-failure

clean:
	rm -rf $(BUILD) $(BUILD_TSAN) $(BUILD_FUZZ) $(BUILD_WIN32) $(BUILD_WIN64)

# Redraw the editor's bitmaps into resources/ (needs Cairo).
skin: configure
	@cmake --build $(BUILD) --target skin

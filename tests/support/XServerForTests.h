// An X server for tests that need one: the display in DISPLAY when it can be opened, else an Xvfb started
// here on a display number it picks itself. The Xvfb ends with the test process (also when the process
// dies), so a crashed run leaves no server behind.
#pragma once

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

// Xlib's own header defines macros that clash with other headers; these two calls are all that is needed.
extern "C" {
struct _XDisplay;
_XDisplay* XOpenDisplay(const char* name);
int XCloseDisplay(_XDisplay* display);
}

namespace tolvane::testing {

class XServerForTests {
public:
    // True when a display can be opened afterwards; reason says why not.
    bool start(std::string& reason) {
        const char* display = std::getenv("DISPLAY");
        if (display && *display && canOpen()) return true;
        std::string binary = findXvfb();
        if (binary.empty()) {
            reason = "no X display and no Xvfb to start";
            return false;
        }
        int fds[2];
        if (pipe(fds) != 0) return false;
        const pid_t parent = getpid();
        pid_t pid = fork();
        if (pid == 0) {
            // The server goes when the test process goes.
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (getppid() != parent) _exit(1);
            close(fds[0]);
            std::string fd = std::to_string(fds[1]);
            execl(binary.c_str(), "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "1024x768x24", "-nolisten", "tcp",
                  "-noreset", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(fds[1]);
        if (pid < 0) {
            close(fds[0]);
            reason = "cannot start Xvfb";
            return false;
        }
        std::string number;
        char c = 0;
        while (read(fds[0], &c, 1) == 1 && c != '\n') number += c;
        close(fds[0]);
        if (number.empty()) {
            kill(pid, SIGTERM);
            waitpid(pid, nullptr, 0);
            reason = "Xvfb did not start";
            return false;
        }
        pid_ = pid;
        setenv("DISPLAY", (":" + number).c_str(), 1);
        for (int i = 0; i < 100 && !canOpen(); ++i) usleep(20000);
        if (!canOpen()) reason = "Xvfb does not answer";
        return canOpen();
    }

    void stop() {
        if (pid_ <= 0) return;
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
        pid_ = 0;
    }

    ~XServerForTests() { stop(); }

private:
    static bool canOpen() {
        _XDisplay* display = XOpenDisplay(nullptr);
        if (!display) return false;
        XCloseDisplay(display);
        return true;
    }

    static std::string findXvfb() {
        const char* path = std::getenv("PATH");
        std::string all = path ? path : "/usr/bin:/bin";
        std::size_t start = 0;
        while (start <= all.size()) {
            std::size_t end = all.find(':', start);
            if (end == std::string::npos) end = all.size();
            std::string candidate = all.substr(start, end - start) + "/Xvfb";
            if (access(candidate.c_str(), X_OK) == 0) return candidate;
            start = end + 1;
        }
        return std::string();
    }

    pid_t pid_ = 0;
};

}  // namespace tolvane::testing

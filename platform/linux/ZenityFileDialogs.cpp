#include "platform/linux/ZenityFileDialogs.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace tolvane {
namespace {

// Windows' "*.*" matches every file; on Linux many files have no dot, so "*" stands for it.
std::string linuxPattern(const char* pattern) {
    std::string p(pattern);
    return p == "*.*" ? "*" : p;
}

// The first line of the program's output, without its line end.
std::string firstLine(const std::string& output) {
    std::string line = output.substr(0, output.find('\n'));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

// A dialog program running as a child process with its standard output on a non-blocking pipe and its
// standard error discarded. Each poll collects what it printed so far; once the pipe is closed and the
// child has ended, its exit status and first line are the answer. A request dropped while the dialog is
// still open ends the child.
class ChildDialog : public DialogRequest {
public:
    ChildDialog(pid_t pid, int output, FileKind kind, bool save) : pid_(pid), output_(output), kind_(kind), save_(save) {}
    ~ChildDialog() override {
        if (output_ >= 0) close(output_);
        if (pid_ > 0) {
            kill(pid_, SIGTERM);
            while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) {
            }
        }
    }
    ChildDialog(const ChildDialog&) = delete;
    ChildDialog& operator=(const ChildDialog&) = delete;

    bool poll(DialogChoice& choice) override {
        if (output_ >= 0) {
            char buffer[4096];
            for (;;) {
                ssize_t n = read(output_, buffer, sizeof buffer);
                if (n > 0) {
                    printed_.append(buffer, static_cast<std::size_t>(n));
                } else if (n < 0 && errno == EINTR) {
                    continue;
                } else {
                    if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return false;  // still open
                    close(output_);
                    output_ = -1;
                    break;
                }
            }
        }
        int status = 0;
        pid_t waited = waitpid(pid_, &status, WNOHANG);
        if (waited == 0) return false;  // closed its output but has not ended yet
        if (waited < 0 && errno == EINTR) return false;
        bool succeeded;
        if (waited == pid_) {
            succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
        } else {
            // A host that ignores SIGCHLD leaves no status to collect: a printed path is the answer then.
            succeeded = waited < 0 && errno == ECHILD;
        }
        pid_ = 0;
        std::string path = firstLine(printed_);
        if (!succeeded || path.empty()) {
            choice = DialogChoice::cancelled();
        } else {
            choice = DialogChoice::chosen(save_ ? withDefaultExtension(path, kind_) : path);
        }
        return true;
    }

private:
    pid_t pid_;
    int output_;
    FileKind kind_;
    bool save_;
    std::string printed_;
};

// Starts the program; null when it cannot be started.
std::unique_ptr<DialogRequest> startChild(const std::string& program, const std::vector<std::string>& arguments,
                                          FileKind kind, bool save) {
    int pipeEnds[2];
    if (pipe2(pipeEnds, O_CLOEXEC) != 0) return nullptr;

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    std::vector<char*> argv;
    for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);

    pid_t pid = 0;
    int spawnError = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeEnds[1]);
    if (spawnError != 0) {
        close(pipeEnds[0]);
        return nullptr;
    }
    fcntl(pipeEnds[0], F_SETFL, fcntl(pipeEnds[0], F_GETFL) | O_NONBLOCK);
    return std::make_unique<ChildDialog>(pid, pipeEnds[0], kind, save);
}

}  // namespace

std::string ZenityFileDialogs::findInPath(const std::string& name) {
    const char* path = std::getenv("PATH");
    if (!path) return {};
    std::string folders(path);
    std::size_t start = 0;
    for (;;) {
        std::size_t end = folders.find(':', start);
        std::string folder = folders.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (folder.empty()) folder = ".";
        std::string candidate = folder + "/" + name;
        struct stat info;
        if (stat(candidate.c_str(), &info) == 0 && S_ISREG(info.st_mode) && access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
        if (end == std::string::npos) return {};
        start = end + 1;
    }
}

std::vector<std::string> ZenityFileDialogs::zenityArguments(FileKind kind, bool save) {
    const FileDialogTexts& texts = fileDialogTexts(kind);
    std::vector<std::string> args = {"zenity", "--file-selection",
                                     std::string("--title=") + (save ? texts.saveTitle : texts.loadTitle)};
    for (int i = 0; i < texts.filterCount; ++i) {
        args.push_back(std::string("--file-filter=") + texts.filters[i].description + " | " +
                       linuxPattern(texts.filters[i].pattern));
    }
    if (save) {
        args.push_back("--save");
        args.push_back("--confirm-overwrite");
    }
    return args;
}

// kdialog takes the filters as one text, a "pattern|description" line per filter.
std::vector<std::string> ZenityFileDialogs::kdialogArguments(FileKind kind, bool save) {
    const FileDialogTexts& texts = fileDialogTexts(kind);
    std::string filter;
    for (int i = 0; i < texts.filterCount; ++i) {
        if (i > 0) filter += "\n";
        filter += linuxPattern(texts.filters[i].pattern) + "|" + texts.filters[i].description;
    }
    return {"kdialog", "--title", save ? texts.saveTitle : texts.loadTitle,
            save ? "--getsavefilename" : "--getopenfilename", ".", filter};
}

std::unique_ptr<DialogRequest> ZenityFileDialogs::start(FileKind kind, bool save) {
    struct Candidate {
        const char* name;
        std::vector<std::string> (*arguments)(FileKind, bool);
    };
    const Candidate candidates[] = {{"zenity", &zenityArguments}, {"kdialog", &kdialogArguments}};
    for (const Candidate& candidate : candidates) {
        std::string program = findInPath(candidate.name);
        if (program.empty()) continue;
        if (auto request = startChild(program, candidate.arguments(kind, save), kind, save)) return request;
    }
    return std::make_unique<AnsweredRequest>(DialogChoice::unavailable());
}

DialogChoice ZenityFileDialogs::wait(DialogRequest& request) {
    DialogChoice choice;
    while (!request.poll(choice)) {
        timespec pause{0, 10 * 1000000L};
        nanosleep(&pause, nullptr);
    }
    return choice;
}

std::unique_ptr<DialogRequest> ZenityFileDialogs::startLoad(FileKind kind) { return start(kind, false); }

std::unique_ptr<DialogRequest> ZenityFileDialogs::startSave(FileKind kind) { return start(kind, true); }

DialogChoice ZenityFileDialogs::openLoad(FileKind kind) { return wait(*start(kind, false)); }

DialogChoice ZenityFileDialogs::openSave(FileKind kind) { return wait(*start(kind, true)); }

}  // namespace tolvane

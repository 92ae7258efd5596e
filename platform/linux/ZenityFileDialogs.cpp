#include "platform/linux/ZenityFileDialogs.h"

#include <cerrno>
#include <cstdlib>
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

struct ChildAnswer {
    bool started = false;
    bool succeeded = false;  // exited with status 0
    std::string output;
};

// Runs the program with its standard output on a pipe and its standard error discarded, collects
// everything it prints and waits for it to end.
ChildAnswer runAndCapture(const std::string& program, const std::vector<std::string>& arguments) {
    ChildAnswer answer;
    int pipeEnds[2];
    if (pipe2(pipeEnds, O_CLOEXEC) != 0) return answer;

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
        return answer;
    }
    answer.started = true;

    char buffer[4096];
    for (;;) {
        ssize_t n = read(pipeEnds[0], buffer, sizeof buffer);
        if (n > 0) {
            answer.output.append(buffer, static_cast<std::size_t>(n));
        } else if (n == 0 || errno != EINTR) {
            break;
        }
    }
    close(pipeEnds[0]);

    int status = 0;
    pid_t waited;
    do {
        waited = waitpid(pid, &status, 0);
    } while (waited < 0 && errno == EINTR);
    if (waited == pid) {
        answer.succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    } else {
        // A host that ignores SIGCHLD leaves no status to collect: a printed path is the answer then.
        answer.succeeded = waited < 0 && errno == ECHILD;
    }
    return answer;
}

// The first line of the program's output, without its line end.
std::string firstLine(const std::string& output) {
    std::string line = output.substr(0, output.find('\n'));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
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

DialogChoice ZenityFileDialogs::ask(FileKind kind, bool save) {
    struct Candidate {
        const char* name;
        std::vector<std::string> (*arguments)(FileKind, bool);
    };
    const Candidate candidates[] = {{"zenity", &zenityArguments}, {"kdialog", &kdialogArguments}};
    for (const Candidate& candidate : candidates) {
        std::string program = findInPath(candidate.name);
        if (program.empty()) continue;
        ChildAnswer answer = runAndCapture(program, candidate.arguments(kind, save));
        if (!answer.started) continue;
        std::string path = firstLine(answer.output);
        if (!answer.succeeded || path.empty()) return DialogChoice::cancelled();
        return DialogChoice::chosen(save ? withDefaultExtension(path, kind) : path);
    }
    return DialogChoice::unavailable();
}

DialogChoice ZenityFileDialogs::openLoad(FileKind kind) { return ask(kind, false); }

DialogChoice ZenityFileDialogs::openSave(FileKind kind) { return ask(kind, true); }

}  // namespace tolvane

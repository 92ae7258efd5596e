#include "params/FileCommands.h"

#include <memory>

#include "params/FileStorage.h"

namespace tolvane {
namespace {

const char kBankLetters[] = "ABCD";

}  // namespace

int FileCommands::currentBank() const {
    int bank = target_.currentProgram() / kProgramsPerBank;
    return bank < 0 ? 0 : (bank > 3 ? 3 : bank);
}

void FileCommands::showFailure(FileResult result) {
    target_.showStatus(fileResultFirstLine(result), fileResultSecondLine(result));
}

FileCommands::~FileCommands() = default;

void FileCommands::run(FileAction action, FileKind kind) {
    const bool save = action == FileAction::Save;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (dialogOpen_) return;  // one dialog at a time
        dialogOpen_ = true;
    }
    // Not under the lock: a modal dialog runs a message loop of its own, from which the host may call the
    // editor's idle, and with it idle() here, on this same thread.
    std::unique_ptr<DialogRequest> request = save ? dialogs_.startSave(kind) : dialogs_.startLoad(kind);
    if (!request) request = std::make_unique<AnsweredRequest>(DialogChoice::unavailable());
    {
        std::lock_guard<std::mutex> lock(mutex_);
        pending_.request = std::move(request);
        pending_.kind = kind;
        pending_.save = save;
    }
    idle();
}

void FileCommands::idle() {
    Pending answered;
    DialogChoice choice;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!pending_.request || !pending_.request->poll(choice)) return;
        answered = std::move(pending_);
        pending_ = Pending{};
        dialogOpen_ = false;
    }
    switch (choice.outcome) {
    case DialogChoice::Outcome::Cancelled: break;
    case DialogChoice::Outcome::Unavailable: showFailure(FileResult::NoDialog); break;
    case DialogChoice::Outcome::Chosen:
        if (answered.save) {
            saveFile(answered.kind, choice.path);
        } else {
            loadFile(answered.kind, choice.path);
        }
        break;
    }
}

bool FileCommands::dialogOpen() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return dialogOpen_;
}

bool fileKindOfName(const std::string& path, FileKind& kind) {
    const std::size_t dot = path.find_last_of("./");
    if (dot == std::string::npos || path[dot] != '.') return false;
    std::string extension = path.substr(dot + 1);
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (extension == "prog" || extension == "prg") kind = FileKind::Program;
    else if (extension == "bank" || extension == "bnk") kind = FileKind::Bank;
    else if (extension == "cmap") kind = FileKind::ControllerMap;
    else return false;
    return true;
}

FileResult FileCommands::loadDroppedFile(const std::string& path) {
    FileKind kind;
    if (!fileKindOfName(path, kind)) {
        showFailure(FileResult::UnknownType);
        return FileResult::UnknownType;
    }
    return loadFile(kind, path);
}

FileResult FileCommands::loadFile(FileKind kind, const std::string& path) {
    FileBytes bytes;
    FileResult result = readWholeFile(path, bytes);
    if (result != FileResult::Ok) {
        showFailure(result);
        return result;
    }

    const int bank = currentBank();
    std::string message;
    switch (kind) {
    case FileKind::Program: {
        ProgramRecord record;
        result = readProgramFile(bytes.data(), bytes.size(), record);
        if (result != FileResult::Ok) break;
        target_.applyProgramFromFile(record);
        message = std::string("Program loaded: ") + kBankLetters[bank] + "-" +
                  std::to_string(target_.currentProgram() % kProgramsPerBank + 1);
        break;
    }
    case FileKind::Bank: {
        auto programs = std::make_unique<BankPrograms>();
        result = readBankFile(bytes.data(), bytes.size(), *programs);
        if (result != FileResult::Ok) break;
        target_.replaceBank(bank, *programs);
        message = std::string("Bank ") + kBankLetters[bank] + " loaded";
        break;
    }
    case FileKind::ControllerMap: {
        float values[kNumMapValues];
        result = readControllerMapFile(bytes.data(), bytes.size(), values);
        if (result != FileResult::Ok) break;
        target_.applyControllerMapsFromFile(values);
        message = "Controller Map loaded";
        break;
    }
    }

    if (result != FileResult::Ok) {
        showFailure(result);
    } else {
        target_.showStatus(message.c_str(), "");
    }
    return result;
}

FileResult FileCommands::saveFile(FileKind kind, const std::string& path) {
    const int bank = currentBank();
    FileBytes bytes;
    std::string message;
    switch (kind) {
    case FileKind::Program: {
        ProgramRecord record{};
        target_.editBuffer(record);
        bytes = writeProgramFile(record);
        message = "Program saved";
        break;
    }
    case FileKind::Bank: {
        auto programs = std::make_unique<BankPrograms>();
        target_.bankPrograms(bank, *programs);
        bytes = writeBankFile(*programs);
        message = std::string("Bank ") + kBankLetters[bank] + " saved";
        break;
    }
    case FileKind::ControllerMap: {
        float values[kNumMapValues] = {};
        target_.editMapValues(values);
        bytes = writeControllerMapFile(values);
        message = "Controller Map saved";
        break;
    }
    }

    FileResult result = writeFileReplacing(path, bytes);
    if (result != FileResult::Ok) {
        showFailure(result);
    } else {
        target_.showStatus(message.c_str(), "");
    }
    return result;
}

}  // namespace tolvane

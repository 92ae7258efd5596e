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

void FileCommands::run(FileAction action, FileKind kind) {
    const bool save = action == FileAction::Save;
    DialogChoice choice = save ? dialogs_.openSave(kind) : dialogs_.openLoad(kind);
    switch (choice.outcome) {
    case DialogChoice::Outcome::Cancelled: break;
    case DialogChoice::Outcome::Unavailable: showFailure(FileResult::NoDialog); break;
    case DialogChoice::Outcome::Chosen:
        if (save) {
            saveFile(kind, choice.path);
        } else {
            loadFile(kind, choice.path);
        }
        break;
    }
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

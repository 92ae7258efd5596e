// The file menu's six commands: load and save a program, a bank or the controller maps, with the
// dialogs, the checks and the status lines that go with them.
#pragma once

#include <mutex>
#include <string>

#include "params/FileDialogs.h"
#include "params/FileResult.h"
#include "params/ParameterIds.h"
#include "params/ProgramFiles.h"
#include "params/ProgramRecord.h"

namespace tolvane {

enum class FileAction { Load, Save };

// What the file commands read from and change in the plug-in.
class FileCommandTarget {
public:
    virtual ~FileCommandTarget() = default;
    virtual int currentProgram() const = 0;  // 0..511
    // Runs the setters of parameters 0..143 with the record's values and loads the record, name
    // included, into the editor; the current program number stays.
    virtual void applyProgramFromFile(const ProgramRecord& record) = 0;
    // Stores the values as the controller-map values, runs the setters of parameters 144..175 and
    // hands the values to the editor.
    virtual void applyControllerMapsFromFile(const float (&values)[kNumMapValues]) = 0;
    // Replaces the 128 programs of bank 0..3 (A..D) and applies the current program again.
    virtual void replaceBank(int bank, const BankPrograms& programs) = 0;
    virtual void editBuffer(ProgramRecord& out) const = 0;               // what "Save Program..." writes
    virtual void editMapValues(float (&out)[kNumMapValues]) const = 0;  // what "Save Controller Map..." writes
    virtual void bankPrograms(int bank, BankPrograms& out) const = 0;    // what "Save Bank..." writes
    virtual void showStatus(const char* line1, const char* line2) = 0;
};

// The kind of file a name's extension names, compared without case: .prog and .prg programs, .bank and
// .bnk banks, .cmap controller maps. False for any other name.
bool fileKindOfName(const std::string& path, FileKind& kind);

class FileCommands {
public:
    FileCommands(FileCommandTarget& target, FileDialogs& dialogs) : target_(target), dialogs_(dialogs) {}
    ~FileCommands();

    // Starts a load or save: a dialog asks for a file, and the load or save follows once the user has
    // answered, at once when the dialog has answered before it returns, else in a later idle(). A
    // cancelled dialog does nothing and shows nothing. While a dialog is open further commands are ignored.
    void run(FileAction action, FileKind kind);

    // Picks up the answer of the open dialog, if it has one, and carries out its command. The host's GUI
    // thread calls it from the editor's idle.
    void idle();
    bool dialogOpen() const;

    // Reads and checks the whole file, then changes the plug-in; a file that fails any check changes
    // nothing. Shows what was loaded, or why not.
    FileResult loadFile(FileKind kind, const std::string& path);

    // A file dropped on the editor: loaded as the load command of the kind its extension names would load
    // the file chosen in its dialog. Any other name changes nothing and says so on the status lines.
    FileResult loadDroppedFile(const std::string& path);

    // Writes the file so that an existing file at path is replaced only by a complete new one.
    FileResult saveFile(FileKind kind, const std::string& path);

private:
    struct Pending {
        std::unique_ptr<DialogRequest> request;
        FileKind kind = FileKind::Program;
        bool save = false;
    };
    void showFailure(FileResult result);
    int currentBank() const;

    FileCommandTarget& target_;
    FileDialogs& dialogs_;
    // The open dialog. Commands may come from any of the host's non-audio threads.
    mutable std::mutex mutex_;
    bool dialogOpen_ = false;  // from the start of a command's dialog until its answer is taken
    Pending pending_;
};

}  // namespace tolvane

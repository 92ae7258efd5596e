#include "params/FileResult.h"

namespace tolvane {

const char* fileResultFirstLine(FileResult result) {
    return result == FileResult::Ok ? "" : "File I/O error";
}

const char* fileResultSecondLine(FileResult result) {
    switch (result) {
    case FileResult::Ok: return "";
    case FileResult::CannotLoad: return "Cannot load file";
    case FileResult::InvalidFormat: return "Invalid format";
    case FileResult::UnknownVersion: return "Unknown file ver.";
    case FileResult::CannotSave: return "Cannot save file";
    case FileResult::NoDialog: return "No file dialog";
    case FileResult::UnknownType: return "Unknown file type";
    }
    return "";
}

}  // namespace tolvane

// What a host keeps of the plug-in with its session, in either of two scopes.
//   Bank:    everything: the current program number, the sound being edited (the edit buffer), the
//            controller maps and the plug-in's 512 programs (params/SessionState.h).
//   Program: the sound being edited, in exactly the bytes of a program file.
#pragma once

namespace tolvane {

enum class StateScope { Bank, Program };

}  // namespace tolvane

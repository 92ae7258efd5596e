// What the tempo-aware displays need to know about the module they describe. The plug-in object
// implements these over its LFOs and effect unit; the displays only read them.
#pragma once

namespace tolvane {

class LfoDisplayState {
public:
    virtual ~LfoDisplayState() = default;
    virtual float tempo() const = 0;          // last tempo passed to the LFO; <= 0 means none
    virtual int divisionIndex() const = 0;    // tempo division in use, -1 when running free
};

class DelayDisplayState {
public:
    virtual ~DelayDisplayState() = default;
    virtual float tempo() const = 0;               // last tempo passed to the effect; <= 0 means none
    virtual int divisionIndex() const = 0;         // delay division in use, -1 when not synced
    virtual float currentDelaySeconds() const = 0; // base delay time the effect currently uses
};

}  // namespace tolvane

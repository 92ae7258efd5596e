// The parameter table: for each of the 176 parameters its names, its display formatter, its value
// in the init program and, for parameters that choose among options or steps, the count N.
//
// The table owns the sixteen value mappings and the shared formatters built on them. The six
// tempo-aware displays (LFO modes and speeds, delay sync and time) describe live module state and
// belong to the plug-in object; the table answers nullptr for them. The setters that carry a
// value to the engine are not here either: the plug-in object owns those.
#pragma once

#include <vector>

#include "params/Formatters.h"
#include "dsp/Mappings.h"
#include "params/ParameterIds.h"

namespace tolvane {

class ParameterTable {
public:
    ParameterTable();
    // Formatters refer to the mappings inside this object.
    ParameterTable(const ParameterTable&) = delete;
    ParameterTable& operator=(const ParameterTable&) = delete;

    const ValueMappings& mappings() const { return mappings_; }

    // Empty texts and nullptr for indices outside 0..175.
    const char* longName(int index) const;
    const char* shortName(int index) const;
    const ValueFormatter* formatter(int index) const;

    // Stored value in the init program for 0..143; 0 for other indices.
    float initValue(int index) const;

    // Options or steps of a quantised parameter (2 for switches); 0 for continuous parameters,
    // for the semitone-valued pitches and for reserved indices.
    int steps(int index) const;

    // LFO1/LFO2 mode and speed, delay tempo sync and delay time.
    static bool isTempoAware(int index);

private:
    // The formatter of an option list, made once per list.
    const OptionFormatter& optionFormatter(const OptionList& options);

    ValueMappings mappings_;
    // Reserved for one per row of the table, so that the pointers to them stay valid.
    std::vector<OptionFormatter> optionFormatters_;

    PercentFormatter percent_{mappings_.unit, false};
    PercentFormatter keyFollowPercent_{mappings_.doubled, false};
    PercentFormatter levelPercent_{mappings_.levelCurve, false};
    PercentFormatter signedPercent_{mappings_.signedUnit, true};
    WidePercentFormatter depthPercent_{mappings_.bipolarSquare, true};
    WidePercentFormatter saturationPercent_{mappings_.saturation, false};
    WidePercentFormatter overdrivePercent_{mappings_.overdrive, false};
    FilteredFormatter noiseFiltered_{mappings_.unit};
    CentFormatter detuneCents_{mappings_.signedUnit, true};
    CentFormatter voiceDetuneCents_{mappings_.unit, false};
    SemitoneFormatter semitones_{mappings_.semitone};
    CutoffFormatter cutoff_{mappings_.cutoffNote};
    UnitFormatter attackSeconds_{mappings_.attackTime, " sec"};
    UnitFormatter decaySeconds_{mappings_.decayTime, " sec"};
    UnitFormatter cutHz_{mappings_.cutFrequency, " Hz"};
    UnitFormatter rateHz_{mappings_.rate, " Hz"};
    VoicesFormatter voices_;
    PortamentoFormatter portamento_{mappings_.portamentoCurve};
    ReservedFormatter reserved_;
    MapParameterFormatter mapParameter_;

    const ValueFormatter* formatters_[kNumParameters] = {};
    int steps_[kNumParameters] = {};
};

}  // namespace tolvane

#include "lv2/BundleText.h"

#include <cstdio>
#include <cstdlib>
#include <map>

#include "lv2/Lv2Ports.h"
#include "params/ControllerRouter.h"
#include "params/FactoryBank.h"
#include "params/OptionLists.h"
#include "params/ParameterTable.h"

namespace tolvane {
namespace lv2 {
namespace {

const char* const kPrefixes =
    "@prefix atom: <http://lv2plug.in/ns/ext/atom#> .\n"
    "@prefix doap: <http://usefulinc.com/ns/doap#> .\n"
    "@prefix foaf: <http://xmlns.com/foaf/0.1/> .\n"
    "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
    "@prefix midi: <http://lv2plug.in/ns/ext/midi#> .\n"
    "@prefix pprops: <http://lv2plug.in/ns/ext/port-props#> .\n"
    "@prefix pset: <http://lv2plug.in/ns/ext/presets#> .\n"
    "@prefix rdf: <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .\n"
    "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n"
    "@prefix state: <http://lv2plug.in/ns/ext/state#> .\n"
    "@prefix time: <http://lv2plug.in/ns/ext/time#> .\n"
    "@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .\n"
    "@prefix units: <http://lv2plug.in/ns/extensions/units#> .\n"
    "@prefix urid: <http://lv2plug.in/ns/ext/urid#> .\n"
    "@prefix xsd: <http://www.w3.org/2001/XMLSchema#> .\n\n";

std::string uri(const std::string& text) { return "<" + text + ">"; }

std::string quoted(const char* text) {
    std::string out = "\"";
    for (const char* c = text; *c; ++c) {
        if (*c == '"' || *c == '\\') out += '\\';
        out += *c;
    }
    return out + "\"";
}

std::string presetUri(int program) {
    char number[8];
    std::snprintf(number, sizeof number, "%03d", program);
    return uri(std::string(kPresetPrefix) + number);
}

std::string presetLabel(int program) {
    char label[48];
    std::snprintf(label, sizeof label, "%c-%03d %.31s", 'A' + program / kProgramsPerBank,
                  program % kProgramsPerBank + 1, factoryProgram(program).name);
    return label;
}

// The value every port starts with: the init program's for program values, no map for the maps.
float portDefault(int index) {
    if (index < kNumProgramValues) return factoryProgram(kNumPrograms - 1).values[index];
    if (index < kFirstMapParameter + kNumControllerMaps) return 0.5f / 100.0f;
    return ControllerRouter::parameterValue(99);
}

// The text of option k of a quantised parameter, as the status line shows it.
std::string optionText(const ParameterTable& table, int index, int option, int count) {
    const float v = (static_cast<float>(option) + 0.5f) / static_cast<float>(count);
    char text[kFormatterTextSize] = {};
    if (const ValueFormatter* f = table.formatter(index)) {
        f->fullText(v, text);
        return text;
    }
    // The tempo-aware switches: LFO modes as they read with a host tempo, delay sync off and on.
    if (index == param::Lfo1Mode || index == param::Lfo2Mode) return options::lfoModes.longText(option);
    return options::offOn.longText(option);
}

}  // namespace

std::vector<std::string> parameterSymbols() {
    ParameterTable table;
    std::vector<std::string> symbols;
    std::map<std::string, int> uses;
    for (int i = 0; i < kNumParameters; ++i) {
        std::string symbol;
        for (const char* c = table.longName(i); *c; ++c) {
            char ch = *c;
            if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch - 'A' + 'a');
            const bool keep = (ch >= 'a' && ch <= 'z') || (ch >= '0' && ch <= '9');
            if (keep) symbol += ch;
            else if (!symbol.empty() && symbol.back() != '_') symbol += '_';
        }
        while (!symbol.empty() && symbol.back() == '_') symbol.pop_back();
        if (symbol.empty() || (symbol[0] >= '0' && symbol[0] <= '9')) symbol = "p_" + symbol;
        symbols.push_back(symbol);
        ++uses[symbol];
    }
    for (int i = 0; i < kNumParameters; ++i)
        if (uses[symbols[static_cast<std::size_t>(i)]] > 1) symbols[static_cast<std::size_t>(i)] += "_" + std::to_string(i);
    return symbols;
}

std::string decimal(float value) {
    char text[64];
    for (int digits = 1; digits < 40; ++digits) {
        std::snprintf(text, sizeof text, "%.*f", digits, static_cast<double>(value));
        if (std::strtof(text, nullptr) == value) break;
    }
    return text;
}

std::string manifestText() {
    std::string out = kPrefixes;
    out += uri(kPluginUri) + "\n    a lv2:Plugin , lv2:InstrumentPlugin ;\n    lv2:binary " + uri(kBinaryName) +
           " ;\n    rdfs:seeAlso <tolvane2.ttl> .\n\n";
    out += uri(kUiUri) + "\n    a ui:X11UI ;\n    ui:binary " + uri(kBinaryName) +
           " ;\n    rdfs:seeAlso <tolvane2-ui.ttl> .\n";
    for (int p = 0; p < kNumDesignedPrograms; ++p)
        out += "\n" + presetUri(p) + "\n    a pset:Preset ;\n    lv2:appliesTo " + uri(kPluginUri) +
               " ;\n    rdfs:seeAlso <presets.ttl> .\n";
    return out;
}

std::string pluginText() {
    ParameterTable table;
    const std::vector<std::string> symbols = parameterSymbols();
    // The plain fractions (pulse width, resonance, sustain, ...) share one formatter: their port value is
    // the coefficient itself. Every other continuous port is a position on a curve and has no unit.
    const ValueFormatter* fraction = table.formatter(param::Osc1PulseWidth);

    std::string out = kPrefixes;
    out += uri(kPluginUri) +
           "\n    a lv2:Plugin , lv2:InstrumentPlugin ;\n"
           "    doap:name \"Tolvane2\" ;\n"
           "    doap:maintainer [ foaf:name \"Brindlecot\" ] ;\n"
           "    rdfs:comment \"Polyphonic virtual-analogue synthesizer\" ;\n"
           "    lv2:minorVersion 0 ;\n    lv2:microVersion 0 ;\n"
           "    lv2:requiredFeature urid:map ;\n"
           "    lv2:optionalFeature lv2:hardRTCapable , <http://lv2plug.in/ns/ext/log#log> ;\n"
           "    lv2:extensionData state:interface ;\n"
           "    ui:ui " + uri(kUiUri) + " ;\n";
    out += "    lv2:port";
    for (int i = 0; i < kNumParameters; ++i) {
        const int steps = table.steps(i);
        out += i == 0 ? " [\n" : " , [\n";
        out += "        a lv2:InputPort , lv2:ControlPort ;\n";
        out += "        lv2:index " + std::to_string(i) + " ;\n";
        out += "        lv2:symbol \"" + symbols[static_cast<std::size_t>(i)] + "\" ;\n";
        out += "        lv2:name " + quoted(table.longName(i)) + " ;\n";
        out += "        lv2:default " + decimal(portDefault(i)) + " ;\n";
        out += "        lv2:minimum 0.0 ;\n        lv2:maximum 1.0 ;\n";
        if (i >= kFirstReserved && i < kFirstMapParameter) {
            out += "        lv2:portProperty pprops:notOnGUI ;\n";
        } else if (steps > 0) {
            out += "        lv2:portProperty lv2:integer , lv2:enumeration ;\n";
            out += "        lv2:scalePoint";
            for (int k = 0; k < steps; ++k) {
                const float v = (static_cast<float>(k) + 0.5f) / static_cast<float>(steps);
                out += std::string(k == 0 ? " " : " , ") + "[ rdfs:label " + quoted(optionText(table, i, k, steps).c_str()) +
                       " ; rdf:value " + decimal(v) + " ]";
            }
            out += " ;\n";
        } else if (table.formatter(i) == fraction) {
            out += "        units:unit units:coef ;\n";
        }
        out += "    ]";
    }
    out += " , [\n"
           "        a lv2:InputPort , atom:AtomPort ;\n"
           "        atom:bufferType atom:Sequence ;\n"
           "        atom:supports midi:MidiEvent , time:Position ;\n"
           "        lv2:designation lv2:control ;\n"
           "        lv2:index " + std::to_string(kEventsPort) + " ;\n"
           "        lv2:symbol \"events\" ;\n"
           "        lv2:name \"Events\" ;\n"
           "    ] , [\n"
           "        a lv2:OutputPort , lv2:AudioPort ;\n"
           "        lv2:index " + std::to_string(kLeftPort) + " ;\n"
           "        lv2:symbol \"out_left\" ;\n"
           "        lv2:name \"Left\" ;\n"
           "    ] , [\n"
           "        a lv2:OutputPort , lv2:AudioPort ;\n"
           "        lv2:index " + std::to_string(kRightPort) + " ;\n"
           "        lv2:symbol \"out_right\" ;\n"
           "        lv2:name \"Right\" ;\n"
           "    ] .\n";
    return out;
}

std::string uiText() {
    std::string out = kPrefixes;
    out += uri(kUiUri) +
           "\n    a ui:X11UI ;\n"
           "    rdfs:comment \"The editor window. It needs instance access; hosts without it show their generic "
           "controls.\" ;\n"
           "    lv2:requiredFeature ui:parent , ui:idleInterface , <http://lv2plug.in/ns/ext/instance-access> ;\n"
           "    lv2:optionalFeature ui:resize , ui:noUserResize , ui:touch ;\n"
           "    lv2:extensionData ui:idleInterface .\n";
    return out;
}

std::string presetsText() {
    const std::vector<std::string> symbols = parameterSymbols();
    std::string out = kPrefixes;
    for (int p = 0; p < kNumDesignedPrograms; ++p) {
        const ProgramRecord& record = factoryProgram(p);
        out += presetUri(p) + "\n    a pset:Preset ;\n    lv2:appliesTo " + uri(kPluginUri) + " ;\n";
        out += "    rdfs:label " + quoted(presetLabel(p).c_str()) + " ;\n";
        out += "    state:state [ " + uri(kProgramUri) + " \"" + std::to_string(p) + "\"^^xsd:int ] ;\n";
        out += "    lv2:port";
        for (int i = 0; i < kNumProgramValues; ++i)
            out += std::string(i == 0 ? " [ " : " , [ ") + "lv2:symbol \"" + symbols[static_cast<std::size_t>(i)] +
                   "\" ; pset:value " + decimal(record.values[i]) + " ]";
        out += " .\n\n";
    }
    return out;
}

}  // namespace lv2
}  // namespace tolvane

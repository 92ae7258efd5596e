ardour {
    ["type"]    = "dsp",
    name        = "Session Trial Notes",
    category    = "Utility",
    license     = "MIT",
    author      = "Tolvane2 tools",
    description = [[Plays a C minor chord for 0.75 s in every second, from the first processed sample on.]]
}

function dsp_ioconfig ()
    return { { midi_in = 1, midi_out = 1, audio_in = 0, audio_out = 0}, }
end

local pos = 0
local period = 48000
local hold = 36000
local chord = { 48, 55, 63 }

function dsp_run (_, _, n_samples)
    assert (type(midiout) == "table")
    local cnt = 1
    local function tx (time, data)
        midiout[cnt] = { time = time, data = data }
        cnt = cnt + 1
    end
    for i = 1, n_samples do
        local p = (pos + i - 1) % period
        if p == 0 then
            for _, n in ipairs(chord) do tx(i, { 0x90, n, 100 }) end
        elseif p == hold then
            for _, n in ipairs(chord) do tx(i, { 0x80, n, 0 }) end
        end
    end
    pos = pos + n_samples
end

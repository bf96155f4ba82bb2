-- What Ardour is asked to do, by its own scripts' language:
--   make FOLDER FORMAT NAME      a session with the plug-in, what it plays and its automation, saved
--   bounce FOLDER OUT FIRST END  loads the session, exports these samples to OUT.wav
-- A session has 48 kHz and blocks of 512; up to beat 6, at frame 69120, 250 beats a minute and two to a
-- bar, then 125 and three. Automation stands in the middle of blocks: Ardour hands it over with the block
-- that holds it (VST3) or the next one (LV2), and at a block's border now with this one, now with that.
io.stdout:setvbuf("no")
local action, folder = arg[1], arg[2]
AudioEngine:set_backend("None (Dummy)", "", "")
local kBlock = 512
AudioEngine:set_buffer_size(kBlock)

local kSuperclock = 282240000 // 48000 -- Ardour's ticks of a sample
local kSeconds = 4
local kLastOfPreset = 12 -- Jittering, which a VST3 tells last of what the preset changes

local function trackOf(list)
    local found
    for track in list:iter() do found = track end
    return found
end

local function waitFor(isThere)
    for _ = 1, 200 do
        if isThere() then return end
        ARDOUR.LuaAPI.usleep(50000)
    end
    assert(isThere())
end

local function automate(processor, name, points)
    for i = 0, 40 do
        local list, control, about = ARDOUR.LuaAPI.plugin_automation(processor, i)
        if not list:isnil() and about.label == name then
            for _, point in ipairs(points) do
                local value = about.lower + point[2] * (about.upper - about.lower)
                control:add(Temporal.timepos_t(point[1]), value, false, true)
            end
            control:set_interpolation(Evoral.InterpolationStyle.Discrete)
            list:set_interpolation(Evoral.InterpolationStyle.Discrete)
            return
        end
    end
    error("no parameter " .. name)
end

-- Scripts can neither put files on a track nor let a parameter play: the session's file is completed.
local function complete(notes, sound)
    local path = folder .. "/s.ardour"
    local file = assert(io.open(path))
    local text = file:read("a")
    file:close()
    local region = [[<Region name="r" start="%s0" length="%s%d@%s0" sync-position="%s0" ]] ..
        [[ancestral-start="%s0" ancestral-length="%s0@%s0" type="%s" id="%d" whole-file="%d" ]] ..
        [[opaque="1" muted="0" default-fade-in="0" default-fade-out="0" fade-in-active="0" ]] ..
        [[fade-out-active="0" scale-amplitude="1" %s/>]]
    local function regionOf(kind, id, whole)
        local unit = kind == "midi" and "b" or "a"
        local length = kind == "midi" and 1920 * 16 or kSeconds * 48000 * kSuperclock
        local sources = kind == "midi" and [[source-0="90001" master-source-0="90001"]] or
            [[channels="2" source-0="90002" source-1="90003" master-source-0="90002" master-source-1="90003"]]
        return region:format(unit, unit, length, unit, unit, unit, unit, unit, kind, id, whole, sources)
    end
    local kind = notes and "midi" or "audio"
    local sources = notes and [[<Source name="notes.mid" type="midi" flags="CanRename" id="90001"/>]] or
        [[<Source name="in.wav" type="audio" flags="CanRename" id="90002" channel="0" origin=""/>]] ..
        [[<Source name="in.wav" type="audio" flags="CanRename" id="90003" channel="1" origin=""/>]]
    text = text:gsub("<Sources/>", "<Sources>" .. sources .. "</Sources>")
    text = text:gsub("<Regions/>", "<Regions>" .. regionOf(kind, 90011, 1) .. "</Regions>")
    text = text:gsub('(<Playlist [^>]*type="' .. kind .. '"[^>]*)/>',
        "%1>" .. regionOf(kind, 90021, 0) .. "</Playlist>")
    -- Of lists with points: an empty one would play the default.
    text = text:gsub('(<AutomationList automation%-id="parameter%-%d+"[^>]*)state="Off">', '%1state="Play">')
    file = assert(io.open(path, "w"))
    file:write(text)
    file:close()
end

local function make(format, name)
    local session = assert(create_session(folder, "s", 48000))
    session:cfg():set_use_transport_fades(false)
    session:cfg():set_use_region_fades(false)
    local map = Temporal.TempoMap.fetch_writable()
    local begin, change = Temporal.timepos_t(0), Temporal.timepos_t(69120)
    map:set_tempo(Temporal.Tempo(250, 250, 4), begin)
    map:set_meter(Temporal.Meter(2, 4), begin)
    map:set_tempo(Temporal.Tempo(125, 125, 4), change)
    map:set_meter(Temporal.Meter(3, 4), change)
    Temporal.TempoMap.update(map)
    map = nil
    local count, kinds = ARDOUR.ChanCount, ARDOUR.DataType
    local isInstrument = name == "Zephyra Instrument"
    local track
    if isInstrument then
        track = trackOf(session:new_midi_track(count(kinds("midi"), 1), count(kinds("audio"), 2), true,
            ARDOUR.PluginInfo(), nil, nil, 1, "notes", ARDOUR.PresentationInfo.max_order,
            ARDOUR.TrackMode.Normal, true))
    else
        track = trackOf(session:new_audio_track(2, 2, nil, 1, "sound",
            ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, true))
    end
    track:input():disconnect_all(nil)
    -- Ardour tells an LV2 of tempo and transport through its MIDI input alone.
    if not isInstrument and format == "LV2" then track:input():add_port("", nil, kinds("midi")) end
    local plugin = ARDOUR.LuaAPI.new_plugin(session, name, ARDOUR.PluginType[format], "")
    assert(not plugin:isnil(), "Ardour knows no " .. format .. " " .. name)
    assert(track:add_processor_by_index(plugin, 0, nil, true) == 0)
    local loaded = plugin:to_insert():plugin(0)
    -- With its first block Ardour sets what it had read of a VST3 before, over a preset chosen meanwhile.
    local added = AudioEngine:processed_samples()
    waitFor(function() return AudioEngine:processed_samples() >= added + 4 * kBlock end)
    assert(loaded:load_preset(loaded:preset_by_label("Turnstile (Pulse Garden)"))) -- follows the transport
    -- Ardour connects a new track to the master in its own time, and a VST3 tells it what a preset changed.
    local function isReady()
        local out = track:output():audio(0)
        local hears = format == "LV2" or ARDOUR.LuaAPI.get_processor_param(plugin, kLastOfPreset) == 0
        return hears and not out:isnil() and out:connected()
    end
    waitFor(isReady)
    automate(plugin, "Play Stop", {{0, 1.0}, {84736, 0.0}, {90368, 1.0}})
    automate(plugin, "Width", {{0, 0.5}, {158464, 1.0}})
    session:save_state("")
    track, plugin, loaded = nil, nil, nil -- what is freed later would need the session then
    collectgarbage()
    close_session()
    complete(isInstrument)
end

local function bounce(name, first, last)
    local session = assert(load_session(folder, "s"))
    local export = session:simple_export()
    assert(export:set_preset("75969a1c-3133-4694-864b-a1fa50e433aa"))
    export:set_folder(folder)
    export:set_name(name)
    export:set_range(tonumber(first), tonumber(last))
    assert(export:check_outputs())
    assert(export:run_export())
    -- Ardour 7.3 spoils its memory in one of six such exports, with plug-ins of its own alone, too:
    -- closing the session would end it there.
    print("done")
    os.exit(0)
end

local done, problem = pcall(({make = make, bounce = bounce})[action], arg[3], arg[4], arg[5])
print(done and "done" or problem)
quit()

-- What Ardour is asked to do, by its own scripts' language:
--   make FOLDER FORMAT NAME      a session with the plug-in, what it plays and its automation, saved
--   bounce FOLDER OUT FIRST END  loads the session, exports these samples to OUT.wav
-- A session has 48 kHz, blocks of 512, 125 beats a minute and three to a bar; automation stands where a
-- frame is a whole tick.
io.stdout:setvbuf("no")
local action, folder = arg[1], arg[2]
AudioEngine:set_backend("None (Dummy)", "", "")
AudioEngine:set_buffer_size(512)

local kSuperclock = 282240000 // 48000 -- Ardour's ticks of a sample
local kSeconds = 4

local function trackOf(list)
    local found
    for track in list:iter() do found = track end
    return found
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
        local length = kind == "midi" and 1920 * 8 or kSeconds * 48000 * kSuperclock
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
    text = text:gsub('(<AutomationList automation%-id="parameter%-%d+"[^>]*)state="Off"', '%1state="Play"')
    file = assert(io.open(path, "w"))
    file:write(text)
    file:close()
end

local function make(format, name)
    local session = assert(create_session(folder, "s", 48000))
    session:cfg():set_use_transport_fades(false)
    session:cfg():set_use_region_fades(false)
    local map = Temporal.TempoMap.fetch_writable()
    map:set_tempo(Temporal.Tempo(125, 125, 4), Temporal.timepos_t(0))
    map:set_meter(Temporal.Meter(3, 4), Temporal.timepos_t(0))
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
    -- A VST3 on a track gets no notes here.
    local onTrack = isInstrument and format == "LV2"
    local route = onTrack and track or session:master_out()
    local plugin = ARDOUR.LuaAPI.new_plugin(session, name, ARDOUR.PluginType[format], "")
    assert(not plugin:isnil(), "Ardour knows no " .. format .. " " .. name)
    assert(route:add_processor_by_index(plugin, 0, nil, true) == 0)
    for _ = 1, 200 do -- Ardour connects a new track to the master in its own time
        local out = track:output():audio(0)
        if isInstrument and not onTrack or not out:isnil() and out:connected() then break end
        ARDOUR.LuaAPI.usleep(50000)
    end
    if onTrack then -- where it hears of the transport: a preset that follows it
        local loaded = plugin:to_insert():plugin(0)
        assert(loaded:load_preset(loaded:preset_by_label("Turnstile (Pulse Garden)")))
        loaded = nil
    elseif isInstrument then
        automate(plugin, "Play Stop", {{0, 1.0}})
    end
    -- At 0 what stands there already: Ardour adds a point there, and an LV2 hears nothing of it.
    automate(plugin, "Pitch", {{0, 0.5}, {30960, 0.75}, {77040, 0.25}})
    automate(plugin, "Width", {{0, 0.5}, {49392, 1.0}})
    session:save_state("")
    track, route, plugin = nil, nil, nil -- what is freed later would need the session then
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

-- One step with a session in Ardour, without a window:
--   ardour7-lua ardour.lua STEP FOLDER [FORMAT SONG | VALUE]
-- create makes a session whose one track plays SONG in the instrument; set stores a value of the cutoff;
-- automate lets the cutoff rise over the song; show only loads. Each tells the cutoff's value at its end.
local step, folder, argument, song = table.unpack(arg)
local name = folder:match("[^/]+$")
local rate, seconds = 48000, 2.5
io.stdout:setvbuf("no")

local backend = AudioEngine:set_backend("None (Dummy)", "", "")
backend:set_device_name("Normal Speed")
backend:set_sample_rate(rate)
assert(AudioEngine:start(false) == 0, "the audio engine did not start")

local file = folder .. "/" .. name .. ".ardour"
local nothing -- several optional arguments

-- The instrument's plug-in, told apart by its format's number in this host.
local function scanned(format)
    for plugin in ARDOUR.LuaAPI.list_plugins():iter() do
        if plugin.name == "Brimvale" and plugin.type == ARDOUR.PluginType[format] then return plugin end
    end
    error("not scanned: " .. format)
end

-- The track, its processor and the cutoff: its place among the inputs and its number in the format.
local function instrument(session)
    for route in session:get_routes():iter() do
        if route:name() == "Song" then
            local processor = route:nth_plugin(0)
            local plugin = processor:to_insert():plugin(0)
            for place = 0, plugin:parameter_count() - 1 do
                local id = plugin:nth_parameter(place, false)
                if plugin:parameter_label(id):match("^%a+") == "FilterFreq" then return route, processor, place, id end
            end
        end
    end
    error("the session has no instrument")
end

-- A region cannot be made from a file without a window, so it is written into the session's file.
local function addSong()
    assert(os.execute(("cp '%s' '%s/interchange/%s/midifiles/song.mid'"):format(song, folder, name)))
    local handle = assert(io.open(file))
    local text = handle:read("a")
    handle:close()
    local function put(pattern, replacement)
        local count
        text, count = text:gsub(pattern, replacement)
        assert(count == 1, "the session's file looks different: " .. pattern)
    end
    put("<Sources/>", '<Sources><Source name="song.mid" type="midi" flags="Writable,CanRename" id="100001"/></Sources>')
    put('(<Playlist id="%d+" name="Song" type="midi"[^/>]*)/>',
        '%1><Region name="song" type="midi" id="100002" start="b0" length="b7680@b0" source-0="100001" ' ..
        'master-source-0="100001" opaque="1" first-edit="nothing"/></Playlist>')
    put("<Locations/>", ('<Locations><Location id="100003" name="session" start="a0" end="a%d" flags="IsSessionRange"/></Locations>')
        :format(seconds * 282240000))
    put('id%-counter="%d+"', 'id-counter="100010"')
    handle = assert(io.open(file, "w"))
    handle:write(text)
    handle:close()
end

local session = assert(step == "create" and create_session(folder, name, rate) or load_session(folder, name))
if step == "create" then
    local midi, audio = ARDOUR.ChanCount(ARDOUR.DataType("midi"), 1), ARDOUR.ChanCount(ARDOUR.DataType("audio"), 2)
    session:new_midi_track(midi, audio, true, scanned(argument), nothing, nothing, 1, "Song",
        ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, true)
end
local route, processor, place, id = instrument(session)
if step == "create" then
    for side = 0, 1 do route:output():audio(side):connect("Master/audio_in " .. side + 1) end
elseif step == "set" then
    assert(ARDOUR.LuaAPI.set_processor_param(processor, place, tonumber(argument)))
    ARDOUR.LuaAPI.wait_for_process_callback(8, 5000) -- a format may be told its values while it plays
elseif step == "automate" then
    local _, curve = ARDOUR.LuaAPI.plugin_automation(processor, place)
    for point = 0, 10 do curve:add(Temporal.timepos_t(point * rate // 5), point / 10, false, true) end
    local parameter = Evoral.Parameter(ARDOUR.AutomationType.PluginAutomation, 0, id)
    processor:to_automatable():automation_control(parameter, false):set_automation_state(ARDOUR.AutoState.Play)
end
if step ~= "show" then session:save_state("") end
print("cutoff", (ARDOUR.LuaAPI.get_processor_param(processor, place, true)))
close_session()
if step == "create" then addSong() end
quit()

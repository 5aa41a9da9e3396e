-- Runs inside Ardour's headless Lua interpreter (ardour7-lua), driven by
-- ardour-session.sh, in one of three modes:
--   record SESSION_DIR NAME MANIFEST: records the dummy backend's sine sweep
--     on a mono track with 16 outputs, inserts the encoder, checks its pins
--     and automatable parameters, bounces the track through it at 90 degrees
--     with compensation off ("off") and at 2.25 m ("nfc"); then puts the LV2
--     plug-in on a second track that plays the same take and moves it to
--     the same place by a detour; saves the session and writes the file
--     paths to MANIFEST;
--   reload SESSION_DIR NAME MANIFEST: loads the saved session, checks the
--     restored parameters and bounces both tracks once more ("reload",
--     "lv2-reload");
--   check MANIFEST REF_OFF REF_NFC: compares the bounces with the take and
--     with zelrender's renders of it, and the LV2 bounce with the VST one.
-- Every failure raises an error starting with "FAIL:" (exit status 1).

local PLUGIN_NAME = "Zelworks Orvalis XY 3 - 3d"
local LV2_URI = "urn:zelworks:orvalis-xy3-3d"
-- The LV2 plug-in's parameters: its control inputs in degrees and metres,
-- then the outputs that report the position, in the same order.
local LV2_AZIMUTH, LV2_X, LV2_DISTANCE, LV2_COMPENSATION, LV2_REPORTS = 0, 2, 5, 6, 7
-- The VST session's "nfc" position, reached through x and a distance port
-- set back to its default: a session that restored only the ports would
-- replay them to another place (x at 1 m after the azimuth).
local LV2_DETOUR = {{LV2_X, 1}, {LV2_DISTANCE, 3}, {LV2_DISTANCE, 4}, {LV2_AZIMUTH, 90},
                    {LV2_COMPENSATION, 2.25}}
local PARAM_NAMES = {"Azimuth", "Elevation", " x ", " y ", " z ", "Distance", "Compensation Distance"}
local N_OUT = 16
-- Normalised settings. 0.25 is 90 degrees (to the left); compensation 0.5 is
-- 0.5 + 3.5 * 0.5 = 2.25 m, a value zelrender's metres map to exactly.
local AZIMUTH_90 = 0.25
local NFC_OFF = 1.0
local NFC_225 = 0.5
local RECORD_SECONDS = 2
-- Upper bound for each wait on Ardour's threads: generous for a busy shared
-- machine; only a hung host ever reaches it.
local WAIT_LIMIT_US = 60 * 1000 * 1000

local function fail(msg)
    error("FAIL: " .. msg, 0)
end

local function check(cond, msg)
    if not cond then fail(msg) end
end

-- Polls cond() until it holds; a condition that never comes is a failure.
local function wait_for(what, cond)
    local start = ARDOUR.LuaAPI.monotonic_time()
    while not cond() do
        if ARDOUR.LuaAPI.monotonic_time() - start > WAIT_LIMIT_US then
            fail("gave up waiting for " .. what)
        end
        ARDOUR.LuaAPI.usleep(20000)
    end
end

------------------------------------------------------------------------------
-- Session side

local function open_session(dir, name, device)
    local engine = AudioEngine
    check(not engine:set_backend("None (Dummy)", "zeltest", ""):isnil(), "Ardour has no dummy audio backend")
    -- The dummy backend's capture ports play a generated signal chosen by
    -- the device name; "Sine Sweep" sweeps the whole band at full scale. The
    -- backend accepts any name (an unknown one gives silence), so the level
    -- of the take is checked instead.
    if device then engine:set_device_name(device) end
    check(load_session(dir, name), "Ardour could not load the session in " .. dir)
end

local function set_param(proc, index, value)
    check(ARDOUR.LuaAPI.set_processor_param(proc, index, value),
          "Ardour refused to set parameter " .. index)
end

local function expect_param(proc, index, value)
    local got = ARDOUR.LuaAPI.get_processor_param(proc, index)
    check(math.abs(got - value) < 1e-6,
          string.format("parameter %d reads %.9g, expected %.9g", index, got, value))
end

-- Bounces the whole recorded region through the track up to and including
-- the encoder: Ardour's own offline processing of the track, which hands the
-- encoder's 16 outputs to 16 new files.
local function bounce(track, proc, region, name, manifest)
    local from = region:position():samples()
    local to = from + region:length():samples()
    check(track:bounceable(proc, true), "Ardour says the track cannot be bounced through the plug-in")
    local itt = ARDOUR.InterThreadInfo()
    local result = track:bounce_range(from, to, itt, proc, true, name, false)
    check(not result:isnil(), "bounce '" .. name .. "' produced no region")
    local channels = result:to_audioregion():n_channels()
    check(channels == N_OUT, string.format("bounce '%s' has %d channels, expected %d", name, channels, N_OUT))
    check(result:length():samples() == to - from, "bounce '" .. name .. "' has the wrong length")
    for c = 0, N_OUT - 1 do
        local fs = result:source(c):to_filesource()
        check(not fs:isnil(), "bounce '" .. name .. "' channel " .. c .. " has no file")
        manifest:write(string.format("bounce %s %d %s\n", name, c, fs:path()))
    end
end

local function the_region(track)
    local count = track:playlist():n_regions()
    check(count == 1, "expected one recorded region, found " .. count)
    for r in track:playlist():region_list():iter() do return r end
end

-- A second track with the LV2 plug-in, playing the first track's take.
local function insert_lv2(track)
    local tracks = Session:new_audio_track(1, N_OUT, nil, 1, "lv2", ARDOUR.PresentationInfo.max_order,
                                           ARDOUR.TrackMode.Normal, true)
    check(tracks:size() == 1, "Ardour made no second track")
    local lv2_track = tracks:front()
    check(lv2_track:use_playlist(ARDOUR.DataType("audio"), track:playlist(), false),
          "the second track cannot share the take")
    local proc = ARDOUR.LuaAPI.new_plugin(Session, LV2_URI, ARDOUR.PluginType.LV2, "")
    check(not proc:isnil(), "Ardour found no LV2 plug-in " .. LV2_URI)
    check(lv2_track:add_processor_by_index(proc, 0, nil, true) == 0, "Ardour refused to insert the LV2 plug-in")
    return lv2_track, proc
end

local function record_mode(dir, name, manifest_path)
    open_session(dir, name, "Sine Sweep")
    local rate = Session:nominal_sample_rate()
    check(Session:master_out():n_inputs():n_audio() == N_OUT, "the master bus should have 16 inputs")

    local tracks = Session:new_audio_track(1, N_OUT, nil, 1, "enc", ARDOUR.PresentationInfo.max_order,
                                           ARDOUR.TrackMode.Normal, true)
    check(tracks:size() == 1, "Ardour made no track")
    -- An audio track is a route too: it answers both kinds of calls.
    local track = tracks:front()
    local route = track
    check(route:n_inputs():n_audio() == 1 and route:n_outputs():n_audio() == N_OUT,
          "the track should have 1 input and 16 outputs")
    -- Ardour connects new tracks from a thread of its own.
    wait_for("the track's input to be connected to the backend",
             function() return route:input():physically_connected() end)

    -- Record the test signal.
    route:rec_enable_control():set_value(1, PBD.GroupControlDisposition.NoGroup)
    Session:maybe_enable_record(false)
    Session:request_roll(ARDOUR.TransportRequestSource.TRS_UI)
    wait_for("recording", function() return Session:actively_recording() end)
    wait_for("two seconds of recording",
             function() return Session:transport_sample() >= RECORD_SECONDS * rate end)
    Session:request_stop(false, false, ARDOUR.TransportRequestSource.TRS_UI)
    wait_for("the transport to stop", function() return Session:transport_stopped() end)
    Session:disable_record(false, false)
    route:rec_enable_control():set_value(0, PBD.GroupControlDisposition.NoGroup)
    wait_for("the recorded region", function() return track:playlist():n_regions() > 0 end)

    local region = the_region(track)
    check(region:position():samples() == 0, "the take does not start at the session start")
    -- Without the default 64-sample fades the encoder is fed exactly the
    -- recorded file, which zelrender then renders too.
    local audio_region = region:to_audioregion()
    audio_region:set_fade_in_active(false)
    audio_region:set_fade_out_active(false)
    local take = region:source(0):to_filesource()
    check(not take:isnil(), "the take has no file")

    -- Insert the encoder.
    local proc = ARDOUR.LuaAPI.new_plugin(Session, PLUGIN_NAME, ARDOUR.PluginType.LXVST, "")
    check(not proc:isnil(), "Ardour found no LXVST plug-in named '" .. PLUGIN_NAME .. "'")
    check(route:add_processor_by_index(proc, 0, nil, true) == 0, "Ardour refused to insert the plug-in")
    local insert = proc:to_insert()
    local plug = insert:plugin(0)
    check(insert:input_streams():n_audio() == 1 and insert:output_streams():n_audio() == N_OUT,
          string.format("plug-in configured %d in / %d out, expected 1 / 16",
                        insert:input_streams():n_audio(), insert:output_streams():n_audio()))

    -- Parameters as Ardour lists them.
    check(plug:parameter_count() == #PARAM_NAMES,
          "Ardour lists " .. plug:parameter_count() .. " parameters, expected " .. #PARAM_NAMES)
    for i = 0, plug:parameter_count() - 1 do
        local _, desc = plug:get_parameter_descriptor(i, ARDOUR.ParameterDescriptor())
        local d = desc[2]
        check(d.label == PARAM_NAMES[i + 1], "parameter " .. i .. " is named '" .. d.label .. "'")
        check(plug:parameter_is_input(i) and plug:parameter_is_control(i),
              "parameter " .. i .. " is not an input control")
    end
    -- Ardour offers automation only for parameters the plug-in declared
    -- automatable (effCanBeAutomated); all seven must be among them.
    local automatable = {}
    for p in insert:to_automatable():all_automatable_params():iter() do
        if p:type() == ARDOUR.AutomationType.PluginAutomation then automatable[p:id()] = true end
    end
    for i = 0, #PARAM_NAMES - 1 do
        check(automatable[i], "Ardour does not list parameter " .. i .. " as automatable")
    end

    local manifest = assert(io.open(manifest_path, "w"))
    manifest:write(string.format("rate %d\n", rate))
    manifest:write(string.format("take %s\n", take:path()))

    -- Source at 90 degrees, elevation 0, far, no compensation.
    set_param(proc, 6, NFC_OFF)
    set_param(proc, 0, AZIMUTH_90)
    expect_param(proc, 0, AZIMUTH_90)
    bounce(track, proc, region, "off", manifest)

    -- The same with compensation at 2.25 m.
    set_param(proc, 6, NFC_225)
    expect_param(proc, 6, NFC_225)
    bounce(track, proc, region, "nfc", manifest)

    local lv2_track, lv2 = insert_lv2(track)
    for _, step in ipairs(LV2_DETOUR) do
        local index, value = step[1], step[2]
        set_param(lv2, index, value)
        -- The plug-in takes a port in its next cycle and reports the result.
        wait_for("the LV2 plug-in to report parameter " .. index .. " at " .. value, function()
            return math.abs(ARDOUR.LuaAPI.get_processor_param(lv2, LV2_REPORTS + index) - value) < 1e-4
        end)
    end

    manifest:write("recorded\n")
    manifest:close()
    check(Session:save_state("", false, false, false, false, false) == 0, "Ardour could not save the session")
    close_session()
end

local function reload_mode(dir, name, manifest_path)
    open_session(dir, name, nil)
    local route = Session:route_by_name("enc")
    check(not route:isnil(), "the reloaded session has no track 'enc'")
    local track = route:to_track()
    local proc = track:nth_plugin(0)
    check(not proc:isnil() and proc:name() == PLUGIN_NAME, "the track lost its plug-in")
    expect_param(proc, 0, AZIMUTH_90)
    expect_param(proc, 1, 0.5)
    expect_param(proc, 6, NFC_225)
    local manifest = assert(io.open(manifest_path, "a"))
    bounce(track, proc, the_region(track), "reload", manifest)
    local lv2_track = Session:route_by_name("lv2"):to_track()
    check(not lv2_track:isnil(), "the reloaded session has no track 'lv2'")
    bounce(lv2_track, lv2_track:nth_plugin(0), the_region(lv2_track), "lv2-reload", manifest)
    manifest:write("reloaded\n")
    manifest:close()
    close_session()
end

------------------------------------------------------------------------------
-- Checking side

-- Reads a WAV file (PCM 16/24/32 bit or 32-bit float, plain or extensible)
-- into one array per channel.
local function read_wav(path)
    local f = io.open(path, "rb")
    check(f, "cannot open " .. path)
    local d = f:read("a")
    f:close()
    check(#d >= 12 and d:sub(1, 4) == "RIFF" and d:sub(9, 12) == "WAVE", path .. " is no WAV file")
    local pos, fmt, data, data_size = 13, nil, nil, nil
    while pos + 8 <= #d do
        local id = d:sub(pos, pos + 3)
        local size = string.unpack("<I4", d, pos + 4)
        if id == "fmt " then fmt = pos + 8 elseif id == "data" then data, data_size = pos + 8, size end
        pos = pos + 8 + size + (size % 2)
    end
    check(fmt and data, path .. " lacks a fmt or data chunk")
    local tag, nch, rate = string.unpack("<I2I2I4", d, fmt)
    local bits = string.unpack("<I2", d, fmt + 14)
    if tag == 0xFFFE then tag = string.unpack("<I2", d, fmt + 24) end
    local code
    if tag == 3 and bits == 32 then code = "f"
    elseif tag == 1 and (bits == 16 or bits == 24 or bits == 32) then code = "i" .. (bits // 8)
    else fail(string.format("%s: unsupported sample format %d/%d", path, tag, bits)) end
    local scale = (code == "f") and 1.0 or 2.0 ^ (bits - 1)
    local frames = math.min(data_size, #d - data + 1) // (nch * bits // 8)
    local ch = {}
    for c = 1, nch do ch[c] = {} end
    -- Unpack several frames per call: much faster than one value at a time.
    local per_call = math.max(1, 64 // nch)
    local p, i = data, 0
    while i < frames do
        local k = math.min(per_call, frames - i)
        local v = table.pack(string.unpack("<" .. string.rep(code, k * nch), d, p))
        p = v[k * nch + 1]
        for j = 0, k - 1 do
            for c = 1, nch do ch[c][i + j + 1] = v[j * nch + c] / scale end
        end
        i = i + k
    end
    return {rate = rate, channels = nch, frames = frames, ch = ch}
end

local function max_abs(a)
    local m = 0
    for i = 1, #a do m = math.max(m, math.abs(a[i])) end
    return m
end

local function max_diff(a, b)
    local m, at = 0, 0
    for i = 1, #a do
        local x = math.abs(a[i] - b[i])
        if x > m then m, at = x, i - 1 end
    end
    return m, at
end

local function read_manifest(path)
    local m = {bounces = {}}
    for line in io.lines(path) do
        local key, rest = line:match("^(%S+)%s*(.*)$")
        if key == "rate" then m.rate = tonumber(rest)
        elseif key == "take" then m.take = rest
        elseif key == "bounce" then
            local name, c, file = rest:match("^(%S+) (%d+) (.+)$")
            m.bounces[name] = m.bounces[name] or {}
            m.bounces[name][tonumber(c) + 1] = file
        elseif key then m[key] = true end
    end
    check(m.recorded and m.reloaded and m.take, "the manifest " .. path .. " is incomplete")
    return m
end

-- All 16 channels of one bounce, each a mono file of the input's length.
local function read_bounce(m, name, frames)
    local files = m.bounces[name]
    check(files, "no bounce '" .. name .. "' in the manifest")
    local out = {}
    for c = 1, N_OUT do
        check(files[c], "bounce '" .. name .. "' lacks channel " .. (c - 1))
        local w = read_wav(files[c])
        check(w.channels == 1, files[c] .. " is not mono")
        check(w.rate == m.rate, files[c] .. " has rate " .. w.rate)
        check(w.frames == frames, string.format("%s has %d frames, the input %d", files[c], w.frames, frames))
        out[c] = w.ch[1]
    end
    return out
end

-- Ambisonic channel numbers (ACN) of the components named in the checks.
local W, Y, Z, X = 1, 2, 3, 4

-- Agreement with zelrender: the same plug-in driven by our own host code,
-- sample for sample. Differences within float rounding are accepted.
local RENDER_TOLERANCE = 1e-5
-- Components that vanish for a source at 90 degrees on the horizon carry
-- only the rounding of cos(90 degrees) in single precision.
local ZERO_TOLERANCE = 1e-5
-- The filters' guard against denormal numbers (1e-30 a sample) builds up
-- while a plug-in runs on silence. Ardour switches a VST 2.4 plug-in off and
-- on as a bounce starts, an LV2 one it leaves running: only channels without
-- any signal, which carry nothing but that guard, may differ, and by less
-- than this. Everything else must be the same samples.
local LV2_TOLERANCE = 1e-20

local function compare_with_render(name, bounce_ch, ref_path, frames, rate)
    local ref = read_wav(ref_path)
    check(ref.channels == N_OUT, ref_path .. " has " .. ref.channels .. " channels")
    check(ref.rate == rate and ref.frames == frames, ref_path .. " differs in rate or length from the input")
    for c = 1, N_OUT do
        local d, at = max_diff(bounce_ch[c], ref.ch[c])
        check(d <= RENDER_TOLERANCE,
              string.format("bounce '%s' channel %d differs from zelrender by %.3g at sample %d", name, c - 1, d, at))
    end
end

local function check_mode(manifest_path, ref_off, ref_nfc)
    local m = read_manifest(manifest_path)
    local take = read_wav(m.take)
    check(take.channels == 1, "the take is not mono")
    check(take.rate == m.rate, "the take's rate differs from the session's")
    check(take.frames >= m.rate, "the take is shorter than a second: " .. take.frames .. " frames")
    local input = take.ch[1]
    local in_peak = max_abs(input)
    check(in_peak > 0.1, string.format("the recorded test signal is too quiet (peak %.3g)", in_peak))

    local off = read_bounce(m, "off", take.frames)
    local nfc = read_bounce(m, "nfc", take.frames)
    local reload = read_bounce(m, "reload", take.frames)

    -- Compensation off, source far at 90 degrees: W and Y carry the input,
    -- X and Z nothing.
    local dW, dY = max_diff(off[W], input), max_diff(off[Y], input)
    local pX, pZ = max_abs(off[X]), max_abs(off[Z])
    check(dW <= ZERO_TOLERANCE, string.format("W differs from the input by %.3g", dW))
    check(dY <= ZERO_TOLERANCE, string.format("Y differs from the input by %.3g", dY))
    check(pX <= ZERO_TOLERANCE and pZ <= ZERO_TOLERANCE,
          string.format("X or Z is not silent for a source at 90 degrees on the horizon: peaks %.3g, %.3g", pX, pZ))
    compare_with_render("off", off, ref_off, take.frames, m.rate)

    -- Compensation on: W is still the input, but the directional channels
    -- now pass through the near-field filters, so Y must differ from it.
    local nW, nY = max_diff(nfc[W], input), max_diff(nfc[Y], input)
    local nX, nZ = max_abs(nfc[X]), max_abs(nfc[Z])
    check(nW <= ZERO_TOLERANCE, string.format("with compensation W differs from the input by %.3g", nW))
    check(nY > 0.01, "compensation at 2.25 m left Y unfiltered: did the parameter reach the plug-in?")
    check(nX <= ZERO_TOLERANCE and nZ <= ZERO_TOLERANCE, "with compensation X or Z is not silent")
    compare_with_render("nfc", nfc, ref_nfc, take.frames, m.rate)

    -- The session Ardour saved and restored must sound like the one it saved.
    local worst = 0
    for c = 1, N_OUT do worst = math.max(worst, (max_diff(reload[c], nfc[c]))) end
    check(worst <= RENDER_TOLERANCE, string.format("the reloaded session differs from the saved one by %.3g", worst))

    -- The LV2 plug-in, loaded with the session: the same samples as the VST
    -- 2.4 one at the same place.
    local lv2 = read_bounce(m, "lv2-reload", take.frames)
    for c = 1, N_OUT do
        local d, at = max_diff(lv2[c], nfc[c])
        check(d <= LV2_TOLERANCE, string.format("the LV2 bounce's channel %d differs from the VST one by %.3g at sample %d",
                                                c - 1, d, at))
    end
    print("PASS")
end

------------------------------------------------------------------------------

local modes = {record = record_mode, reload = reload_mode, check = check_mode}
check(modes[arg[1]], "usage: ardour-session.lua record|reload SESSION_DIR NAME MANIFEST | check MANIFEST REF_OFF REF_NFC")
modes[arg[1]](arg[2], arg[3], arg[4])

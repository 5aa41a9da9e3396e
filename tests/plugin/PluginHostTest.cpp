// The module as a host sees it: loaded with dlopen, reached only through
// VSTPluginMain and the AEffect record.
#include "HostedPlugin.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

enum { kAzim, kElev, kX, kY, kZ, kDist, kNFC };

TEST(PluginEntry, RefusesHostThatReportsNoVersion) {
    TestHost::calls.clear();
    TestHost::versionAnswer = 0;
    AEffect* effect = pluginEntry()(TestHost::callback);
    TestHost::versionAnswer = 2400;
    EXPECT_EQ(effect, nullptr);
    ASSERT_EQ(TestHost::calls.size(), 1u); // nothing was built that could call again
    EXPECT_EQ(TestHost::calls[0].opcode, audioMasterVersion);
    EXPECT_TRUE(TestHost::calls[0].nullEffect);
}

TEST(PluginEntry, AsksTheHostOnlyForItsVersionWhileLoading) {
    TestHost::calls.clear();
    HostedPlugin plugin;
    // Neither construction nor the two resumes ask for MIDI or anything else.
    ASSERT_EQ(TestHost::calls.size(), 1u);
    EXPECT_EQ(TestHost::calls[0].opcode, audioMasterVersion);
    EXPECT_EQ(pluginEntry()(nullptr), nullptr);
}

TEST(PluginIdentity, EffectRecord) {
    HostedPlugin plugin;
    const AEffect& e = *plugin.effect();
    EXPECT_EQ(e.magic, kEffectMagic);
    EXPECT_EQ(e.uniqueID, 0x5A583378); // 'ZX3x'
    EXPECT_EQ(e.version, 1);
    EXPECT_EQ(e.numPrograms, 16);
    EXPECT_EQ(e.numParams, 7);
    EXPECT_EQ(e.numInputs, 1);
    EXPECT_EQ(e.numOutputs, 16);
    // An editor, but no double precision, no chunks, not a synth.
    EXPECT_EQ(e.flags, effFlagsCanReplacing | effFlagsHasEditor);
    EXPECT_EQ(e.initialDelay, 0);
    EXPECT_NE(e.processReplacing, nullptr);
    EXPECT_NE(e.processDoubleReplacing, nullptr);
}

TEST(PluginIdentity, NamesVersionsAndDefaults) {
    HostedPlugin plugin;
    EXPECT_EQ(plugin.text(effGetEffectName), "Zelworks Orvalis XY 3 - 3d");
    EXPECT_EQ(plugin.text(effGetProductString), "Zelworks Orvalis XY 3 - 3d");
    EXPECT_EQ(plugin.text(effGetVendorString), "ZelWorks");
    EXPECT_EQ(plugin.dispatch(effGetEffectName), 0); // no buffer, no answer
    EXPECT_EQ(plugin.dispatch(effGetVendorVersion), 1000);
    EXPECT_EQ(plugin.dispatch(effGetVstVersion), 2400);
    EXPECT_EQ(plugin.dispatch(effGetPlugCategory), kPlugCategUnknown);
    EXPECT_EQ(plugin.dispatch(effGetTailSize), 0);
    EXPECT_EQ(plugin.dispatch(effGetProgram), 0);
    for (const char* query : {"receiveVstEvents", "receiveVstMidiEvent", "sendVstEvents",
                              "sendVstMidiEvent", "bypass", "hasCockosExtensions"}) {
        char buffer[64];
        std::strcpy(buffer, query);
        EXPECT_EQ(plugin.dispatch(effCanDo, 0, 0, buffer), 0) << query;
    }
    for (int i = 0; i < 7; ++i) EXPECT_EQ(plugin.dispatch(effCanBeAutomated, i), 1);
    void* chunk = &plugin;
    EXPECT_EQ(plugin.dispatch(effGetChunk, 0, 0, &chunk), 0);
    EXPECT_EQ(chunk, &plugin);
}

VstPinProperties sentinelPin() {
    VstPinProperties pin;
    std::memset(&pin, kSentinel, sizeof pin);
    return pin;
}

// Label aside, the fields a pin request may write are the flags only.
bool onlyLabelAndFlagsWritten(const VstPinProperties& pin) {
    const VstPinProperties untouched = sentinelPin();
    return std::memcmp(&pin.arrangementType, &untouched.arrangementType,
                       sizeof pin - offsetof(VstPinProperties, arrangementType)) == 0;
}

TEST(PluginPins, MonoInput) {
    HostedPlugin plugin;
    VstPinProperties pin = sentinelPin();
    EXPECT_EQ(plugin.dispatch(effGetInputProperties, 0, 0, &pin), 1);
    EXPECT_STREQ(pin.label, "Mono Input");
    EXPECT_EQ(pin.flags, kVstPinIsActive);
    EXPECT_TRUE(onlyLabelAndFlagsWritten(pin));
    for (int index : {1, -1, 16}) {
        VstPinProperties other = sentinelPin();
        const VstPinProperties untouched = sentinelPin();
        EXPECT_EQ(plugin.dispatch(effGetInputProperties, index, 0, &other), 0);
        EXPECT_EQ(std::memcmp(&other, &untouched, sizeof other), 0) << index;
    }
    EXPECT_EQ(plugin.dispatch(effGetInputProperties, 0, 0, nullptr), 0);
}

TEST(PluginPins, OutputLabelsInLetterOrder) {
    HostedPlugin plugin;
    const char* letters = "WXYZRSTUVKLMNOPQ";
    for (int k = 0; k < 16; ++k) {
        VstPinProperties pin = sentinelPin();
        EXPECT_EQ(plugin.dispatch(effGetOutputProperties, k, 0, &pin), 1);
        EXPECT_EQ(std::string(pin.label), std::string(1, letters[k])) << k;
        EXPECT_EQ(pin.flags, kVstPinIsActive);
        EXPECT_TRUE(onlyLabelAndFlagsWritten(pin));
    }
}

TEST(PluginPins, OutputRequestsBeyondTheRangeAnswerActiveWithoutLabel) {
    HostedPlugin plugin;
    for (int index : {16, -1, 1000}) {
        VstPinProperties pin = sentinelPin();
        EXPECT_EQ(plugin.dispatch(effGetOutputProperties, index, 0, &pin), 1) << index;
        EXPECT_EQ(pin.flags, kVstPinIsActive);
        EXPECT_EQ(pin.label[0], kSentinel);
        EXPECT_TRUE(onlyLabelAndFlagsWritten(pin));
    }
    EXPECT_EQ(plugin.dispatch(effGetOutputProperties, 0, 0, nullptr), 0);
}

TEST(PluginParameters, NamesAndLabels) {
    HostedPlugin plugin;
    const char* names[] = {
        "Azimuth", "Elevation", " x ", " y ", " z ", "Distance", "Compensation Distance"};
    const char* labels[] = {"degrees", "degrees", "m", "m", "m", "m", "m"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(plugin.text(effGetParamName, i), names[i]);
        EXPECT_EQ(plugin.text(effGetParamLabel, i), labels[i]);
    }
    for (int i : {7, -1, 1 << 30}) {
        EXPECT_EQ(plugin.text(effGetParamName, i), kUntouched) << i;
        EXPECT_EQ(plugin.text(effGetParamLabel, i), kUntouched) << i;
        EXPECT_EQ(plugin.text(effGetParamDisplay, i), kUntouched) << i;
        EXPECT_EQ(plugin.getParameter(i), 0.0f) << i;
    }
    for (int op : {effGetParamName, effGetParamLabel, effGetParamDisplay})
        EXPECT_EQ(plugin.dispatch(op, 0, 0, nullptr), 0);
}

TEST(PluginParameters, DefaultProgramMirrorsTheEncoder) {
    HostedPlugin plugin;
    const float expected[] = {0.0f, 0.5f, 1.0f, 0.5f, 0.5f, 0.0f, 1.0f};
    const char* texts[] = {"0", "0", "4.00", "0.00", "0.00", "off", "off"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_NEAR(plugin.getParameter(i), expected[i], 1e-7) << i;
        EXPECT_EQ(plugin.display(i), texts[i]) << i;
    }
}

TEST(PluginParameters, AngleDisplaysRoundToNearestHalvesAwayFromZero) {
    HostedPlugin plugin;
    const struct {
        int index;
        float degrees;
        const char* text;
    } cases[] = {{kAzim, 179.6f, "180"}, {kAzim, 179.4f, "179"}, {kAzim, 359.7f, "360"},
                 {kElev, 44.6f, "45"},   {kElev, -44.6f, "-45"}, {kElev, -44.4f, "-44"},
                 {kElev, -0.4f, "0"},    {kElev, -0.6f, "-1"},   {kElev, -90.0f, "-90"}};
    for (const auto& c : cases) {
        const float v = c.index == kAzim ? c.degrees / 360.0f : (c.degrees + 90.0f) / 180.0f;
        plugin.setParameter(c.index, v);
        EXPECT_EQ(plugin.display(c.index), c.text) << c.degrees;
    }
}

TEST(PluginParameters, MetreDisplaysTruncateAndMakeRoomForTheSign) {
    HostedPlugin plugin;
    // x = -4 + 8 v: 0.35 gives exactly -1.2f, 0.5875 gives 0.69999981.
    plugin.setParameter(kX, 0.35f);
    EXPECT_EQ(plugin.display(kX), "-1.20");
    plugin.setParameter(kX, 0.5875f);
    EXPECT_EQ(plugin.display(kX), "0.69"); // truncated, not rounded
    plugin.setParameter(kZ, 0.25f);
    EXPECT_EQ(plugin.display(kZ), "-2.00");
    plugin.setParameter(kDist, 0.0025f); // 3.99 m
    EXPECT_EQ(plugin.display(kDist), "3.99");
    plugin.setParameter(kDist, 0.0f);
    EXPECT_EQ(plugin.display(kDist), "off");
    plugin.setParameter(kNFC, 0.0f);
    EXPECT_EQ(plugin.display(kNFC), "0.50");
    plugin.setParameter(kNFC, 1.0f);
    EXPECT_EQ(plugin.display(kNFC), "off");
}

TEST(PluginParameters, OutOfRangeIndicesChangeNothing) {
    HostedPlugin plugin;
    plugin.setParameter(kElev, 0.7f);
    float before[7];
    for (int i = 0; i < 7; ++i) before[i] = plugin.getParameter(i);
    for (int i : {7, -1, 1 << 30}) plugin.setParameter(i, 0.3f);
    for (int i = 0; i < 7; ++i) EXPECT_EQ(plugin.getParameter(i), before[i]) << i;
}

TEST(PluginPrograms, NamesAndSelection) {
    HostedPlugin plugin;
    for (int p = 0; p < 16; ++p)
        EXPECT_EQ(plugin.text(effGetProgramNameIndexed, p, 7), "Prog " + std::to_string(p + 1));
    for (int p : {16, -1}) {
        EXPECT_EQ(plugin.text(effGetProgramNameIndexed, p), kUntouched) << p;
        char buffer[32];
        EXPECT_EQ(plugin.dispatch(effGetProgramNameIndexed, p, 0, buffer), 0) << p;
    }
    EXPECT_EQ(plugin.dispatch(effGetProgramNameIndexed, 0, 0, nullptr), 0);
    EXPECT_EQ(plugin.text(effGetProgramName), "Prog 1");

    plugin.dispatch(effSetProgram, 0, 3);
    EXPECT_EQ(plugin.dispatch(effGetProgram), 3);
    EXPECT_EQ(plugin.text(effGetProgramName), "Prog 4");
    // Refused: past the end, negative, and numbers that would wrap to 1 in 32 bits.
    for (VstIntPtr p : {VstIntPtr{16}, VstIntPtr{-1}, (VstIntPtr{1} << 32) + 1})
        plugin.dispatch(effSetProgram, 0, p);
    EXPECT_EQ(plugin.dispatch(effGetProgram), 3);
}

TEST(PluginPrograms, NamingAndTheInitNumbering) {
    HostedPlugin plugin;
    plugin.dispatch(effSetProgram, 0, 3);
    char init[] = "Init";
    plugin.dispatch(effSetProgramName, 0, 0, init);
    EXPECT_EQ(plugin.text(effGetProgramName), "Init 4");
    EXPECT_EQ(plugin.text(effGetProgramNameIndexed, 3), "Init");

    char longName[] = "A name far longer than twenty-three characters";
    plugin.dispatch(effSetProgramName, 0, 0, longName);
    EXPECT_EQ(plugin.text(effGetProgramName), std::string(longName, 23));
    EXPECT_EQ(plugin.dispatch(effSetProgramName, 0, 0, nullptr), 0);
    EXPECT_EQ(plugin.dispatch(effGetProgramName, 0, 0, nullptr), 0);
}

TEST(PluginPrograms, EveryChangeWritesTheEncodersViewBack) {
    HostedPlugin plugin;
    // Azimuth 90 degrees, then x = 2 m: the source moves to x 2, y 4, beyond
    // 4 m, and is pulled back; program 0 now stores the derived azimuth.
    plugin.setParameter(kAzim, 0.25f);
    plugin.setParameter(kX, 0.75f);
    const float derived = plugin.getParameter(kAzim);
    EXPECT_NEAR(derived, 0.17620819f, 1e-6); // atan2(4, 2) / 2 pi
    plugin.dispatch(effSetProgram, 0, 1);
    EXPECT_EQ(plugin.getParameter(kAzim), 0.0f);
    plugin.dispatch(effSetProgram, 0, 0);
    EXPECT_NEAR(plugin.getParameter(kAzim), derived, 1e-6);
}

TEST(PluginPrograms, SwitchingAppliesOnlyTheStoredAzimuth) {
    HostedPlugin plugin;
    plugin.setParameter(kElev, 0.75f);    // 45 degrees
    plugin.setParameter(kDist, 0.5f);     // 2 m
    plugin.setParameter(kNFC, 0.2f);      // 1.2 m
    plugin.dispatch(effSetProgram, 0, 5); // stores the defaults
    EXPECT_NEAR(plugin.getParameter(kAzim), 0.0f, 1e-6);
    EXPECT_NEAR(plugin.getParameter(kElev), 0.75f, 1e-6);
    EXPECT_NEAR(plugin.getParameter(kDist), 0.5f, 1e-6);
    EXPECT_NEAR(plugin.getParameter(kNFC), 0.2f, 1e-6);
    EXPECT_EQ(plugin.display(kElev), "45");
}

} // namespace

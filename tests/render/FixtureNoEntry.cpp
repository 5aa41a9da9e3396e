// A shared object that is no VST plug-in: it exports no VSTPluginMain.
extern "C" __attribute__((visibility("default"))) int zelFixtureNotAPlugin() {
    return 42;
}

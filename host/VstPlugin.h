#pragma once

#include "HostCallback.h"
#include "aeffectx.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

// A plug-in that cannot be loaded or is not what the host can drive.
struct PluginError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

using VstPluginMainProc = AEffect* (*)(audioMasterCallback);

// A shared object opened with dlopen, closed when this goes away.
class VstLibrary {
public:
    explicit VstLibrary(const std::string& path);
    ~VstLibrary();
    VstLibrary(const VstLibrary&) = delete;
    VstLibrary& operator=(const VstLibrary&) = delete;

    VstPluginMainProc entryPoint() const;
    const std::string& path() const { return filePath; }

private:
    std::string filePath;
    void* handle;
};

// One plug-in instance, spoken to through its AEffect record only, as a DAW
// does. Destroying it sends effClose, after which the plug-in deletes itself.
class VstPlugin {
public:
    VstPlugin(VstPluginMainProc entry, HostCallback& host, const std::string& name);
    ~VstPlugin();
    VstPlugin(const VstPlugin&) = delete;
    VstPlugin& operator=(const VstPlugin&) = delete;

    // A host that feeds a fixed channel layout refuses any other before a
    // single sample is processed.
    void requireChannels(int inputs, int outputs, const std::string& hostName) const;

    void open();
    void setSampleRate(float rate);
    void setBlockSize(int size);
    void setProgram(int index);
    void setMains(bool on);

    // The plug-in's editor, for a host that shows it: hasEditor() tells
    // whether it offers one; editorSize() is {0, 0} if it gives no size.
    bool hasEditor() const;
    std::pair<int, int> editorSize();
    // parentWindow is the platform's window handle (an X11 window id).
    bool openEditor(void* parentWindow);
    void idleEditor();
    void closeEditor();

    void setParameter(int index, float value);
    float getParameter(int index);
    void processReplacing(float** inputs, float** outputs, int frames);

    AEffect& effect() { return *aeffect; }
    const AEffect& effect() const { return *aeffect; }
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr, float opt = 0.0f);
    std::string effectName();
    std::string vendorName();
    std::string productName();
    int vendorVersion();
    int vstVersion();
    int category();
    std::string parameterName(int index);
    std::string parameterLabel(int index);
    std::string parameterDisplay(int index);
    std::string programName(int index);
    std::string inputLabel(int index);
    std::string outputLabel(int index);

private:
    std::string text(VstInt32 opcode, VstInt32 index = 0);
    std::string pinLabel(VstInt32 opcode, int index);

    HostCallback& host;
    AEffect* aeffect;
};

// The library, the host callback and the instance, destroyed in the order a
// host tears them down: effClose first, dlclose last.
class LoadedPlugin {
public:
    explicit LoadedPlugin(const std::string& path);
    VstPlugin& plugin() { return *instance; }
    HostCallback& host() { return callback; }
    const HostCallback& host() const { return callback; }

private:
    VstLibrary library;
    HostCallback callback;
    std::unique_ptr<VstPlugin> instance;
};

#pragma once

// Parameter indices, shared by the plug-in and its editor: an editor
// control's tag is the index of the parameter it drives.
enum ZelAmbiEncParam : int { kAzim = 0, kElev, kX, kY, kZ, kDist, kNFC, kNumParams };

enum : int { kNumPrograms = 16 };

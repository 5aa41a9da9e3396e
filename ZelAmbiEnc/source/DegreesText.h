#pragma once

// An angle in degrees as a whole number for the host's parameter display:
// rounded to nearest with halves away from zero, in single precision (add or
// subtract 0.5, then truncate), so 44.5 reads 45, -44.5 reads -45 and -0.4
// reads 0. A NaN reads "nan" and magnitudes beyond any angle "Huge!" or
// "-Huge!". Writes at most 8 bytes including the terminator.
void formatDegrees(float degrees, char* text);

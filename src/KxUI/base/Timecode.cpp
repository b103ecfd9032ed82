#include <KxUI/base/Timecode.h>

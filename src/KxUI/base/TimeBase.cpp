#include <KxUI/base/TimeBase.h>

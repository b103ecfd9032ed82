#pragma once

#include <KxUI/base/Time.h>

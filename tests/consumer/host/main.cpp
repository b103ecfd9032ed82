#include <KxUI/Version.h>
#include <KxUI/base/Time.h>

#include <cstdio>

int main() {
    std::printf("%s %d\n", KXUI_VERSION_STRING, int(Kestrel::Base::InvalidTime < 0));
}

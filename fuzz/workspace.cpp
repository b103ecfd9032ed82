// Bytes as operations on a workspace and on its model.

#include <support/Require.h>
#include <workspace/WorkspaceFuzzer.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString trouble = Kestrel::Fuzz::runOperations(Kestrel::Fuzz::textOf(data, size));
    Kestrel::Fuzz::require(trouble.isEmpty(), qPrintable(trouble));
    return 0;
}

#pragma once

#include <QtTest>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Kestrel::Test {

/** A QtTest class known to this executable. */
struct Case {
    std::string name;
    std::function<std::unique_ptr<QObject>()> make;
};

/** Every case of this executable, in the order of registration. */
std::vector<Case>& cases();

struct Registration {
    Registration(const char* name, std::function<std::unique_ptr<QObject>()> make) {
        cases().push_back({name, std::move(make)});
    }
};

} // namespace Kestrel::Test

/** Registers a QtTest class; stands after its definition, before the moc include. */
#define KXUI_TEST(Class)                                                                           \
    static const Kestrel::Test::Registration registration##Class(                                  \
        #Class, [] { return std::unique_ptr<QObject>(new Class); })

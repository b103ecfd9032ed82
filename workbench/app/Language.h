#pragma once

#include <QString>

namespace Kestrel::Workbench {

/** Shows the texts of the workbench, of the library and of Qt in a language, given as "de" or
    "de_AT"; an empty name stands for the user's. The texts stay English in a language that there is
    no catalog for; false then, unless it is English. Numbers and dates are not changed. To be
    called once, after the application object was made and before the first widget is. */
bool setLanguage(const QString& name);

} // namespace Kestrel::Workbench

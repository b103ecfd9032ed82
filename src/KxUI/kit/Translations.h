#pragma once

#include <KxUI/Export.h>

#include <QLocale>

namespace Kestrel::UI {

/** The texts of the library that users see, in other languages than English. */
class KXUI_EXPORT Translations {
public:
    /** Shows them in the first language of `locale` that there is a catalog for; a later call
        replaces what an earlier one installed. Catalogs (`kxui_de.qm`) are looked for beside the
        library, where it was installed to or built, and in `kxui/translations` of the system's data
        folders. Numbers and dates are not changed, and Qt's own texts and the host's have catalogs
        of their own.

        Call it after the application object was made and before the first widget is: a widget keeps
        the texts that it was made with. Interface thread.
        @return whether the texts are in a language of `locale` now; English needs no catalog. False
        without an application object. */
    static bool install(const QLocale& locale = QLocale());
};

} // namespace Kestrel::UI

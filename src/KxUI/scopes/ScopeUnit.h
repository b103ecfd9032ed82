#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeEncoding.h>

#include <optional>
#include <string>

namespace Kestrel::UI {

/** What values of a signal are labelled in; the numbers are part of saved states. */
enum class ScopeUnit {
    Percent,   ///< of white
    Ire,       ///< the same, under the name of analogue video
    Code8,     ///< 8-bit codes, narrow or full by the encoding
    Code10,    ///< likewise
    Code12,    ///< likewise
    Millivolt, ///< 700 for white; chroma is centred on 350
    NitsSdr,   ///< cd/m2 on a display of ITU-R BT.1886 with a white of 100
    NitsPq,    ///< cd/m2 of a signal of SMPTE ST 2084
    NitsHlg,   ///< cd/m2 of greys on the encoding's HLG display
    Stops,     ///< log2 of light over the 0.18 of a grey card
    Value      ///< the value itself
};

/** How many units there are. */
constexpr int ScopeUnitCount = 11;

/** A value of luma, or of red, green and blue, in a unit; not finite where the unit has no number for
    it, as stops for 0. Thread-safe, as what follows. */
KXUI_EXPORT double toScopeUnit(ScopeUnit unit, double value,
                               const ScopeEncoding& encoding) noexcept;
/** Undoes toScopeUnit(), as far as the unit tells values apart. */
KXUI_EXPORT double fromScopeUnit(ScopeUnit unit, double number,
                                 const ScopeEncoding& encoding) noexcept;
/** The same for Cb and Cr; as percent in nits and stops, which chroma has none of. */
KXUI_EXPORT double chromaToScopeUnit(ScopeUnit unit, double chroma,
                                     const ScopeEncoding& encoding) noexcept;
KXUI_EXPORT double chromaFromScopeUnit(ScopeUnit unit, double number,
                                       const ScopeEncoding& encoding) noexcept;

/** A unit as users know it, in English: "10-bit". The texts live as long as the process. */
KXUI_EXPORT const char* scopeUnitName(ScopeUnit unit) noexcept;
/** What stands behind a number: " %"; empty for codes and values. */
KXUI_EXPORT const char* scopeUnitSuffix(ScopeUnit unit) noexcept;
/** Digits behind the point that tell a number of this size from its neighbours in a 10-bit signal. */
KXUI_EXPORT int scopeUnitDecimals(ScopeUnit unit, double number) noexcept;
/** A value as text with a point and without groups, and back; nothing where it is no number. What
    stands behind the number, or "nan", may be left out or be in any case. */
KXUI_EXPORT std::string scopeUnitText(ScopeUnit unit, double value, const ScopeEncoding& encoding);
KXUI_EXPORT std::optional<double> scopeUnitValue(ScopeUnit unit, const std::string& text,
                                                 const ScopeEncoding& encoding);

} // namespace Kestrel::UI

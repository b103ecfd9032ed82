#pragma once

#include <KxUI/scopes/ScopeEncoding.h>

/** \file
    How light becomes a signal, and back, in double precision. Light of 1.0 is white; curves of
    video are continued below 0 as odd functions, so that nothing is lost. */
namespace Kestrel::UI {

/** IEC 61966-2-1. */
double srgbSignal(double light) noexcept;
double srgbLight(double signal) noexcept;

/** ITU-R BT.709 item 1.2, with the digits of BT.2020. */
double rec709Signal(double light) noexcept;
double rec709Light(double signal) noexcept;

/** SMPTE ST 2084, ITU-R BT.2100 table 4. */
double pqSignal(double nits) noexcept;
double pqNits(double signal) noexcept;

/** ITU-R BT.2100 table 5: scene light 0-1 to the signal. */
double hlgSignal(double sceneLight) noexcept;
double hlgSceneLight(double signal) noexcept;
/** The same for greys on a display with a white of `peakNits` and no light for black. */
double hlgSignalOfNits(double nits, double peakNits) noexcept;
double hlgNits(double signal, double peakNits) noexcept;

/** ITU-R BT.1886 with a white of 100 cd/m2 and no light for black. */
double displayNits(double signal) noexcept;
double displaySignal(double nits) noexcept;

/** What the encoding's transfer makes of light; the value itself where it is AsStored. */
double signalOfLight(const ScopeEncoding& encoding, double light) noexcept;
/** Light of a signal as the encoding has it, 1.0 being white. */
double lightOfSignal(const ScopeEncoding& encoding, double signal) noexcept;
/** cd/m2 of a signal as the encoding has it. */
double nitsOfSignal(const ScopeEncoding& encoding, double signal) noexcept;
double signalOfNits(const ScopeEncoding& encoding, double nits) noexcept;

} // namespace Kestrel::UI

#pragma once

#include <KxUI/base/Time.h>
#include <KxUI/base/TimeBase.h>

#include <QMetaType>

/** \file
    Makes the types of time known to Qt: included wherever they are part of a signal or slot. */

Q_DECLARE_METATYPE(Kestrel::Base::TimeBase)
Q_DECLARE_METATYPE(const Kestrel::Base::Time*)

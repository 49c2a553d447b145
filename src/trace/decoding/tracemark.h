// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! How much of a thing something in a trace is. Shown by shape and word, not by colour alone. */
enum class TraceMark : quint8 {
    Plain,
    Note,    //!< worth a look, and nothing wrong: a boot-up, a device that has not got an object
    Warning, //!< not as it should be
    Fault,   //!< wrong
};

/*! Whether it is shown where only what is wrong is shown. */
constexpr bool isWrong(TraceMark mark)
{
    return mark >= TraceMark::Warning;
}

#pragma once

#include <QString>

#include <ostream>

/** Lets a failed comparison show text instead of code units. */
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

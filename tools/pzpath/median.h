#pragma once

#include <QVector>

#include <algorithm>

/** The upper one of two in the middle; 0 of no values. */
template <typename T>
T medianOf(QVector<T> values)
{
    if (values.isEmpty())
        return T();
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

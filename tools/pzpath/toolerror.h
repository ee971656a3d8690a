#pragma once

#include <QString>

/** Ends a command: one clear line for standard error and exit status 2. */
struct ToolError {
    QString text;
};

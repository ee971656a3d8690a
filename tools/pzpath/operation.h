#pragma once

#include <QString>

#include <array>
#include <memory>

class XPath;
struct vxBooleanReport;

/** A boolean operation by its name on the command line and its code in the engine. */
struct Operation {
    const char *name;
    int code;
};

inline constexpr std::array<Operation, 4> operations = {
    { { "unite", 2 }, { "intersect", 1 }, { "subtract", 3 }, { "exclude", 4 } }
};

/** Throws ToolError for an unknown name. */
const Operation &operationByName(const QString &name);

/**
 * Null where the engine has no answer (an open first operand united with or excluded from something). report
 * tells how far the result can be trusted.
 */
std::unique_ptr<XPath> compute(const Operation &operation, XPath &a, XPath &b, vxBooleanReport &report);
std::unique_ptr<XPath> compute(const Operation &operation, XPath &a, XPath &b);

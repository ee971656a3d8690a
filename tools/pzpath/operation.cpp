#include "operation.h"

#include "toolerror.h"

#include <pzgraphics/xpath.h>

const Operation &operationByName(const QString &name)
{
    for (const Operation &operation : operations) {
        if (name == QLatin1String(operation.name))
            return operation;
    }
    throw ToolError{
        QStringLiteral("unknown operation '%1' (unite, intersect, subtract, exclude)").arg(name)
    };
}

std::unique_ptr<XPath> compute(const Operation &operation, XPath &a, XPath &b, vxBooleanReport &report)
{
    return std::unique_ptr<XPath>(XPath::computeBoolean(&a, &b, operation.code, report));
}

std::unique_ptr<XPath> compute(const Operation &operation, XPath &a, XPath &b)
{
    vxBooleanReport report;
    return compute(operation, a, b, report);
}

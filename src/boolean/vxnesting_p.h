#pragma once

#include <QVector>

class vxPath;

namespace vx {

/** Contours that were traced, once it is known which lie in which. */
struct NestedContours {
    /**
     * Those that stay, largest bounds first, oriented in place: each turns against the one that it lies in,
     * and like the first where it lies in none.
     */
    QVector<vxPath *> kept;
    /** Some contour may lie in another that does not count as around it, or the other way round. */
    bool isUnsure = false;
};

/**
 * Nests contours that do not cross, asking for an interior point of each; at least one. By the nonzero rule
 * those go that are filled on both sides. Contours that go are left as they are, to whoever owns them.
 */
NestedContours nestContours(const QVector<vxPath *> &contours, bool evenOdd);

} // namespace vx

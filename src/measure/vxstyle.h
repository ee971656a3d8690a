#pragma once

/** Which parts of the painted outline count for bounds; geometric bounds are all that is computed for now. */
struct vxBoundOpt {
    bool insert = false;
    bool stroke = false;
    bool handle = false;
    bool internal = false;

    /** What containment asks for: bounds of the curves alone. */
    static vxBoundOpt geometric() { return { true, false, false, true }; }
};

/** How a path is painted, as far as containment and bounds care. */
struct vxStyle {
    bool hasFill = true;
    bool hasStroke = true;
    /** Fill rule: true even-odd, false nonzero. The only field that changes a containment answer. */
    bool evenOdd = true;
    /** Stroke width in path units. */
    double strokeWidth = 1.0;
    double miterLimit = 10.0;

    /** An ordinary style with the given fill rule. */
    static vxStyle filled(bool evenOdd) { return { true, true, evenOdd, 1.0, 10.0 }; }
};

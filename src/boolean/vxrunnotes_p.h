#pragma once

namespace vx {

struct SearchDoubts;

/**
 * What a run of the boolean engine met that it may get wrong. The engine classifies each stretch by how the
 * outlines lie at its ends, or, where that is not certain, by one sample. A run that met nothing of this
 * needs no audit.
 */
struct RunNotes {
    bool overlap = false;
    bool touch = false;
    /** A crossing at so small an angle that the outlines run side by side before and after it. */
    bool shallow = false;
    /** A meeting at, or within the time margin of, a curve's end. */
    bool atVertex = false;
    /**
     * An operand crosses itself, so that its outline was taken apart and may be paired otherwise at a
     * crossing.
     */
    bool selfCrossing = false;
    /** Vertices on nearly straight runs were dropped, which moves the outline a little. */
    bool simplified = false;
    /**
     * A curve runs back and forth on one line. Where it lies on itself, both sides of the outline are the
     * same, and a count taken there tells nothing of the rest of its stretch.
     */
    bool folded = false;
    /**
     * A contour runs the other way round than its flag says, since its vertices were moved: what it fills
     * lies on the other side than everybody takes it to.
     */
    bool misdirected = false;
    /**
     * What a contour lies in was found by a ray that passes a vertex by less than rounding may hide, and so
     * which way round it has to run.
     */
    bool grazedNesting = false;
    /** Several intersections at one place. */
    bool chained = false;
    /**
     * A stretch whose middle lies on another outline, so that its count was taken elsewhere or means little.
     */
    bool movedSample = false;
    /** A stretch whose middle is a vertex or an extremum: the ray along its level grazes it. */
    bool grazedSample = false;
    bool discardedContour = false;
    /**
     * An edge that counts as level though its ends are not: a ray between their levels passes it by, and so
     * miscounts.
     */
    bool tiltedLevel = false;
    /** A search for intersections was cut short, so that it may have missed some. */
    bool mayMissMeetings = false;
    /** A search may have missed a meeting at a vertex. */
    bool nearMiss = false;
    /**
     * A contour is open, and its ends are apart or have handles: it is filled as if a line closed it, of
     * which searches and walks know nothing.
     */
    bool open = false;
    /** An operand is so small, or lies so far off, that absolute tolerances do not mean what they should. */
    bool outOfScale = false;

    /**
     * No doubt, but what the audit must know: the first operand, and with it the result, runs the other way
     * round.
     */
    bool counterClockwise = false;

    /** No doubt of its own either: a search was cut short, whether or not that turned out to matter. */
    bool limitHit = false;
    /** Nor this: there were doubts, which are settled. */
    bool settled = false;
    /** Nor this: an operand touches itself where one of the outlines has no vertex. */
    bool touchOffVertex = false;

    /** Takes over what another run, of a part, has met. */
    void add(const RunNotes &part);
    void add(const SearchDoubts &search);
    /** Drops all doubts, which turned out to be unfounded. */
    void settle();
    bool anyDoubt() const;
};

} // namespace vx

#pragma once

class TestBinderProject;

/**
 * Holds a project that was read from a binder to the law of round trips: once written, it reads
 * back and is written the same. What can't come back the same by design is settled in @p project
 * first:
 *
 * - items without a uuid get a new one at each writing, so they are given one;
 * - a binder of version 1 keeps no uuids, so the project is taken for one of version 2;
 * - a card without a stored position is written where the writer puts it, at the time of writing,
 * so it is given a position;
 * - a scale factor is kept to six digits, so it is cut to them.
 */
void tvlCheckBinderRoundTrip(TestBinderProject *project);

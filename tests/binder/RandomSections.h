#pragma once

#include <QRandomGenerator>
#include <QString>

class TestBinderProject;

/**
 * Fills every project-level section with random values, texts from all planes of Unicode among
 * them, and only in forms that a binder keeps exactly: what is read back must be equal. Favorites
 * and other members are picked from the project's items, which must have been entered.
 */
void fillRandomSections(TestBinderProject *project, QRandomGenerator *random);

/** The first section in which two projects aren't equal; empty when they are in all. */
[[nodiscard]] QString differingSection(const TestBinderProject &left,
                                       const TestBinderProject &right);

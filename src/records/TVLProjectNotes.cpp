#include "TVLProjectNotes.h"

#include <QTextDocument>

#include <algorithm>

bool TVLProjectNotes::hasId(int id) const
{
    return std::any_of(mNotes.begin(), mNotes.end(),
                       [id](const auto &note) { return note.first == id; });
}

bool TVLProjectNotes::notesModified() const
{
    return std::any_of(mNotes.begin(), mNotes.end(),
                       [](const auto &note) { return note.second && note.second->isModified(); });
}

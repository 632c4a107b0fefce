#include "TVLProjectNotes.h"

#include <QTextDocument>
#include <QVariant>

#include <algorithm>

namespace {

constexpr char ReadErrorProperty[] = "readError";

} // namespace

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

QString TVLProjectNotes::readError(const QTextDocument *note)
{
    return note->property(ReadErrorProperty).toString();
}

void TVLProjectNotes::setReadError(QTextDocument *note, const QString &error)
{
    note->setProperty(ReadErrorProperty, error);
}

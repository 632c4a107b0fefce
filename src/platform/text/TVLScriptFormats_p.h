#pragma once

#include <QList>
#include <QPair>
#include <QTextFormat>

#include <optional>

class QXmlStreamAttributes;

/** The properties of formats that a script mode keeps, as attributes of XML. */
namespace TVLScriptFormats {

enum Scope { BlockScope, CharScope };

/** What is kept of a format: the name and the text of each property, in a fixed order. */
[[nodiscard]] QList<QPair<QString, QString>> toAttributes(const QTextFormat &format, Scope scope);

/**
 * Sets the properties that the attributes tell of. Those of an unknown name are passed over; the
 * result is the name of the first whose text isn't one of its values, empty if all are.
 */
[[nodiscard]] QString fromAttributes(const QXmlStreamAttributes &attributes, Scope scope,
                                     QTextFormat *format);

/** A format with what is kept of another, and nothing else. */
[[nodiscard]] QTextFormat kept(const QTextFormat &format, Scope scope);

} // namespace TVLScriptFormats

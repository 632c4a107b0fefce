#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <unordered_set>
#include <vector>

class QXmlStreamWriter;

/**
 * The tokens of an XML document, recorded once and written as often as wanted with nothing but the
 * writer's own work: what any writer of that document can't be faster than.
 */
class XmlTokens
{
public:
    /** Records a document; what stands between elements only to indent them is left out. */
    explicit XmlTokens(const QByteArray &document);

    void write(QXmlStreamWriter *writer) const;

private:
    enum class Kind : quint8 {
        StartDocument,
        EndDocument,
        StartElement,
        EndElement,
        Attribute,
        Text
    };

    /** Small, and equal strings are kept once: the replay must not be slowed by its own memory. */
    struct Token
    {
        Kind kind;
        const QString *name;
        const QString *text;
    };

    void add(Kind kind, QStringView name = {}, QStringView text = {});
    [[nodiscard]] const QString *keep(QStringView text);

    std::vector<Token> mTokens;
    std::unordered_set<QString> mStrings;
};

#include "TVLRtfScript_p.h"

#include "TVLRtfHeader_p.h"
#include "TVLTextFormat.h"

using namespace Qt::StringLiterals;

namespace {

enum class ScriptValue : quint8 { Text, Number, Flag };

struct ScriptProperty
{
    int property;
    QStringView word;
    ScriptValue kind;
};

constexpr ScriptProperty ScriptProperties[] = {
    {TVLTextFormat::ScriptElement, u"element", ScriptValue::Text},
    {TVLTextFormat::ScriptType, u"type", ScriptValue::Text},
    {TVLTextFormat::SceneNumber, u"number", ScriptValue::Text},
    {TVLTextFormat::SectionDepth, u"depth", ScriptValue::Number},
    {TVLTextFormat::DualDialogue, u"dual", ScriptValue::Flag},
};

constexpr QChar PartEnd = u';';

/** A text without the character that ends a part. */
QString guarded(QString text)
{
    return text.replace(u'%', u"%25"_s).replace(PartEnd, u"%3b"_s);
}

QString unguarded(QStringView text)
{
    return text.toString().replace(u"%3b"_s, QString(PartEnd)).replace(u"%25"_s, u"%"_s);
}

QVariant valueOf(ScriptValue kind, QStringView text)
{
    switch (kind) {
    case ScriptValue::Number:
        return text.toInt();
    case ScriptValue::Flag:
        return true;
    case ScriptValue::Text:
        break;
    }
    return unguarded(text);
}

} // namespace

QByteArray tvlRtfScriptGroup(const QTextBlockFormat &format)
{
    QString text;
    for (const ScriptProperty &row : ScriptProperties) {
        if (!format.hasProperty(row.property))
            continue;
        text += row.word.toString() + u' ' + guarded(format.property(row.property).toString())
            + PartEnd;
    }
    if (text.isEmpty())
        return {};
    QByteArray group = "{\\*\\tvlscript ";
    tvlAppendRtfText(&group, text);
    return group + '}';
}

void tvlSetRtfScript(QStringView text, QTextBlockFormat *format)
{
    const auto parts = text.split(PartEnd);
    for (const QStringView part : parts) {
        const qsizetype blank = part.indexOf(u' ');
        if (blank < 0)
            continue;
        for (const ScriptProperty &row : ScriptProperties) {
            if (row.word == part.first(blank))
                format->setProperty(row.property, valueOf(row.kind, part.sliced(blank + 1)));
        }
    }
}

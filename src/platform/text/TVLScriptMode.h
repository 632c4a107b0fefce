#pragma once

#include "TVLScriptElement.h"

#include <QByteArray>
#include <QList>
#include <QMetaType>

/** The kinds of paragraphs that a script is made of, as a plain value. */
class TVL_EXPORT TVLScriptMode
{
public:
    QString mTitle;
    QList<TVLScriptElement> mElements; ///< The first is what a new script begins with.

    /** The mode of a screenplay. */
    [[nodiscard]] static TVLScriptMode factoryDefaults();
    void loadFactoryDefaults() { *this = factoryDefaults(); }

    /**
     * The mode as XML, from which fromXml() makes an equal one. Empty when there is no such XML
     * because a name holds characters that XML doesn't have.
     */
    [[nodiscard]] QByteArray toXml() const;

    /**
     * Takes over what toXml() wrote; elements and attributes of XML that aren't known are passed
     * over. False for anything else, with the mode as it was and the reason in @p error, if given.
     */
    [[nodiscard]] bool fromXml(const QByteArray &xml, QString *error = nullptr);
    /** Takes over what toXml() wrote into the file at @p filePath. False if it can't be read or
     * holds anything else, with the mode as it was and the reason in @p error, if given. */
    [[nodiscard]] bool load(const QString &filePath, QString *error = nullptr);

    friend bool operator==(const TVLScriptMode &, const TVLScriptMode &) = default;
};

Q_DECLARE_METATYPE(TVLScriptMode)

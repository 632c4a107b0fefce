#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;

/** Asks for the encoding of a text file. Main thread only; needs a QApplication. */
class TVL_EXPORT TVLSelectTextCodecDialog : public QDialog
{
    Q_OBJECT

public:
    /** @param text what is asked; with an empty one the usual words */
    explicit TVLSelectTextCodecDialog(QWidget *parent = nullptr, const QString &text = {});
    ~TVLSelectTextCodecDialog() override;

    /**
     * The encoding of the options or, if they have none, the user's answer: the name of a codec,
     * empty when the user wants none. An answer with the check box becomes that of the options.
     * @param recommended stands first in the list; with an empty one that of the locale
     */
    [[nodiscard]] static QByteArray getTextEncoding(QWidget *parent, const QString &text,
                                                    const QByteArray &recommended);

    /** Shows the dialog; whether it was accepted. */
    int exec(const QByteArray &recommended);
    using QDialog::exec;

    /** The encoding that is chosen at the moment. */
    [[nodiscard]] QByteArray codec() const;
    /** Whether the dialog is not to be shown again. */
    [[nodiscard]] bool isForAlways() const;

private:
    void fill(const QByteArray &recommended);

    QLabel *mLabel; ///< Child object, as the next two.
    QComboBox *mCodecs;
    QCheckBox *mForAlways;
};

/**
 * Answers questions for an encoding while it lives, for programs that no person watches: none is
 * shown. One inside another answers in its place.
 */
class TVL_EXPORT TVLUnattendedTextCodec
{
public:
    explicit TVLUnattendedTextCodec(const QByteArray &codec);
    ~TVLUnattendedTextCodec();
    Q_DISABLE_COPY_MOVE(TVLUnattendedTextCodec)

private:
    QByteArray mOutside; ///< The answer outside of this one; null if there is none.
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QTextDocument;
class QVariant;

/*! Collects the report as one HTML text and writes it to a PDF and an HTML file.
 *
 *  The constructor begins the text with the style sheet; the operations append to it in the order of their
 *  calls: a device table holds section tables, and these hold rows. Texts go in as they are, without
 *  escaping. The rows of a device alternate between two styles.
 *
 *  Needs a QGuiApplication (fonts); its platform may be "offscreen".
 */
class pdfWriter : public QObject
{
    Q_OBJECT

public:
    /*! What went wrong with writeFiles(). */
    enum class Failure : quint8 {
        None,
        HtmlNotOpened, //!< the HTML file cannot be created, so that nothing was written
        Incomplete,    //!< a file could not be written to its end, for example because the disk is full
    };

    pdfWriter();
    ~pdfWriter() override;

    /*! The user's home directory. */
    static QString homeFolder();

    /*! The path of the file dx_report.pdf, or dx_report.html, in a folder. */
    static QString pdfPath(const QString &folder = homeFolder());
    static QString htmlPath(const QString &folder = homeFolder());

    /*! The text so far. */
    const QString &html() const { return m_html; }

    /*! Begins the table of one device. endDeviceTable() closes it together with the section that is open in
     *  it, and lets the styles of the rows begin anew.
     */
    void beginDeviceTable(const QString &title);
    void beginSectionTable(const QString &title);
    void endSectionTable();
    void endDeviceTable();

    void addRow(const QString &name, const QString &text);

    /*! Appends a row with name and text of sub-index 1 of an object. */
    void addObjectRow(quint16 index, const QVariant &value);

    void addErrorRegisterRow(const QVariant &value);     //!< of object 1001h
    void addDeviceInformationRow(const QVariant &value); //!< of object 1000h
    void addDeviceStatusRows(const QVariant &value);     //!< of object 6002h: what is active, and the state
    void addBatteryStatusRow(const QVariant &value);     //!< of object 6002h

    /*! Ends the text and writes dx_report.html and dx_report.pdf into \a folder, which has to exist.
     *
     *  In the PDF a "<" that begins no tag is text; the HTML file has it as it came, and browsers show it so.
     *
     *  Each file is replaced only by a complete new one. Nothing is written when the HTML file cannot be. On
     *  failure returns false, and errorString() says in a sentence what is missing.
     */
    bool writeFiles(const QString &folder = homeFolder());

    /*! Why the last writeFiles() failed; empty when it did not. */
    QString errorString() const { return m_errorString; }
    Failure failure() const { return m_failure; }

private:
    bool writeHtml(const QString &path);
    bool writePdf(const QString &path);
    void print(const QString &path);
    bool failed(const QString &path, const QString &reason, Failure failure = Failure::Incomplete);

    QString m_html; // only ever appended to
    std::unique_ptr<QTextDocument> m_document;
    QString m_errorString;
    Failure m_failure = Failure::None;
    quint8 m_rowIndex = 0; // rows in the current device table; even and odd ones have styles of their own
};

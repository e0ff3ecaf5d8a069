#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>

namespace pg::bankfile {

// Validation of an XML document against an XML schema, by libxml2. The schema is parsed
// once, when the validator is made; each document is then checked in memory, before anything
// is written.
class XsdValidator
{
public:
    // One violation: the line of the document, the path of the element at fault (local names
    // from the root, "[n]" after an element that has siblings of its name, as in
    // "/CBIPaymentRequest/PmtInf/CdtTrfTxInf[3]/Cdtr/Nm") and what is wrong with it.
    struct Issue
    {
        int line = 0;
        QString path;
        QString message;
    };

    // A validator of the schema given as text. A schema that libxml2 cannot read leaves the
    // validator unusable: schemaError() says why, and every document fails.
    explicit XsdValidator(const QByteArray &schema);
    ~XsdValidator();
    XsdValidator(const XsdValidator &) = delete;
    XsdValidator &operator=(const XsdValidator &) = delete;

    bool isUsable() const;
    const QString &schemaError() const { return m_schemaError; }

    // The violations of the document, in document order; none when it is valid.
    QList<Issue> validate(const QByteArray &document) const;

    // The schema of the CBI credit-transfer request, as shipped with the program.
    static QByteArray paymentRequestSchema();

private:
    struct Schema;
    std::unique_ptr<Schema> m_schema;
    QString m_schemaError;
};

} // namespace pg::bankfile

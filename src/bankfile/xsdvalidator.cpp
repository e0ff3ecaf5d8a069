#include "xsdvalidator.h"

#include <QFile>
#include <QRegularExpression>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlschemas.h>

namespace pg::bankfile {

namespace {

#if LIBXML_VERSION >= 21200
using ErrorPtr = const xmlError *;
#else
using ErrorPtr = xmlErrorPtr;
#endif

// Beyond this many violations the rest are not described: the clerk is shown the first ones,
// and a document with thousands of faults is not walked thousands of times.
constexpr int MaxIssues = 100;

QString text(const xmlChar *chars)
{
    return chars ? QString::fromUtf8(reinterpret_cast<const char *>(chars)) : QString();
}

// libxml2 names elements with their namespace in braces; the clerk needs the name alone.
QString readable(const char *message)
{
    static const QRegularExpression ns(QStringLiteral("\\{[^}]*\\}"));
    return QString::fromUtf8(message ? message : "").remove(ns).trimmed();
}

// The violations libxml2 reports most, in words the clerk reads: the element, the value and the
// rule it breaks. A report of another form keeps libxml2's words.
QString italian(const QString &message)
{
    struct Form
    {
        QRegularExpression pattern;
        const char16_t *text;
    };
    static const QList<Form> forms{
        {QRegularExpression(QStringLiteral("^Element '([^']*)': \\[facet 'maxLength'\\] The value "
                                           "has a length of '(\\d+)'; this exceeds the allowed "
                                           "maximum length of '(\\d+)'\\.$")),
         u"Elemento %1: il testo è di %2 caratteri, più dei %3 ammessi."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': \\[facet 'minLength'\\] The value "
                                           "has a length of '(\\d+)'; this underruns the allowed "
                                           "minimum length of '(\\d+)'\\.$")),
         u"Elemento %1: il testo è di %2 caratteri, meno dei %3 richiesti."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': \\[facet 'pattern'\\] The value "
                                           "'(.*)' is not accepted by the pattern '(.*)'\\.$")),
         u"Elemento %1: il valore '%2' non ha la forma richiesta (%3)."},
        {QRegularExpression(
             QStringLiteral("^Element '([^']*)': \\[facet 'enumeration'\\] The "
                            "value '(.*)' is not an element of the set \\{(.*)\\}\\.$")),
         u"Elemento %1: il valore '%2' non è tra quelli ammessi (%3)."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': \\[facet 'fractionDigits'\\] The "
                                           "value '(.*)' has more fractional digits than are "
                                           "allowed \\('(\\d+)'\\)\\.$")),
         u"Elemento %1: il valore '%2' ha più dei %3 decimali ammessi."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': \\[facet 'totalDigits'\\] The "
                                           "value '(.*)' has more digits than are allowed "
                                           "\\('(\\d+)'\\)\\.$")),
         u"Elemento %1: il valore '%2' ha più delle %3 cifre ammesse."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': \\[facet 'minInclusive'\\] The "
                                           "value '(.*)' is less than the minimum value allowed "
                                           "\\('(.*)'\\)\\.$")),
         u"Elemento %1: il valore '%2' è minore del minimo ammesso (%3)."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': \\[facet 'maxInclusive'\\] The "
                                           "value '(.*)' is greater than the maximum value "
                                           "allowed \\('(.*)'\\)\\.$")),
         u"Elemento %1: il valore '%2' è maggiore del massimo ammesso (%3)."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': '(.*)' is not a valid value of "
                                           "the atomic type '([^']*)'\\.$")),
         u"Elemento %1: il valore '%2' non è valido per il tipo %3."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': '(.*)' is not a valid value of "
                                           "the local atomic type\\.$")),
         u"Elemento %1: il valore '%2' non è valido."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': This element is not expected\\. "
                                           "Expected is \\( ?(.*?) ?\\)\\.$")),
         u"Elemento %1: non previsto in questa posizione; è atteso: %2."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': This element is not expected\\.$")),
         u"Elemento %1: non previsto in questa posizione."},
        {QRegularExpression(QStringLiteral("^Element '([^']*)': Missing child element\\(s\\)\\. "
                                           "Expected is \\( ?(.*?) ?\\)\\.$")),
         u"Elemento %1: mancano elementi; è atteso: %2."},
    };
    for (const Form &form : forms) {
        const QRegularExpressionMatch m = form.pattern.match(message);
        if (!m.hasMatch())
            continue;
        // All the values at once, so that a value holding "%1" is not taken for a place.
        const QString text = QString::fromUtf16(form.text);
        switch (form.pattern.captureCount()) {
        case 1:
            return text.arg(m.captured(1));
        case 2:
            return text.arg(m.captured(1), m.captured(2));
        default:
            return text.arg(m.captured(1), m.captured(2), m.captured(3));
        }
    }
    return message;
}

QString pathOf(xmlNodePtr node)
{
    QString attribute;
    if (node && node->type == XML_ATTRIBUTE_NODE) {
        attribute = QStringLiteral("/@") + text(node->name);
        node = node->parent;
    }
    QStringList parts;
    for (xmlNodePtr n = node; n && n->type == XML_ELEMENT_NODE; n = n->parent) {
        QString name = text(n->name);
        int index = 0;
        int count = 0;
        if (n->parent)
            for (xmlNodePtr s = n->parent->children; s; s = s->next)
                if (s->type == XML_ELEMENT_NODE && xmlStrEqual(s->name, n->name)) {
                    ++count;
                    if (s == n)
                        index = count;
                }
        if (count > 1)
            name += QStringLiteral("[%1]").arg(index);
        parts.prepend(name);
    }
    return parts.isEmpty() ? QString() : u'/' + parts.join(u'/') + attribute;
}

void collectIssue(void *context, ErrorPtr error)
{
    auto *issues = static_cast<QList<XsdValidator::Issue> *>(context);
    if (!error || issues->size() >= MaxIssues)
        return;
    issues->append({error->line, pathOf(static_cast<xmlNodePtr>(error->node)),
                    italian(readable(error->message))});
}

void collectText(void *context, ErrorPtr error)
{
    auto *messages = static_cast<QStringList *>(context);
    if (error)
        messages->append(readable(error->message));
}

} // namespace

struct XsdValidator::Schema
{
    xmlSchemaPtr schema = nullptr;
    ~Schema()
    {
        if (schema)
            xmlSchemaFree(schema);
    }
};

XsdValidator::XsdValidator(const QByteArray &schema) : m_schema(std::make_unique<Schema>())
{
    xmlInitParser();
    QStringList messages;
    xmlSchemaParserCtxtPtr parser =
        xmlSchemaNewMemParserCtxt(schema.constData(), int(schema.size()));
    if (parser) {
        xmlSchemaSetParserStructuredErrors(parser, collectText, &messages);
        m_schema->schema = xmlSchemaParse(parser);
        xmlSchemaFreeParserCtxt(parser);
    }
    if (!m_schema->schema)
        m_schemaError =
            messages.isEmpty() ? QStringLiteral("schema non leggibile") : messages.join(u'\n');
}

XsdValidator::~XsdValidator() = default;

bool XsdValidator::isUsable() const
{
    return m_schema->schema != nullptr;
}

QList<XsdValidator::Issue> XsdValidator::validate(const QByteArray &document) const
{
    QList<Issue> issues;
    if (!isUsable()) {
        issues.append({0, QString(), m_schemaError});
        return issues;
    }
    xmlDocPtr doc =
        xmlReadMemory(document.constData(), int(document.size()), "document.xml", nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    if (!doc) {
        ErrorPtr last = xmlGetLastError();
        issues.append({last ? last->line : 0, QString(),
                       readable(last ? last->message : "documento XML non leggibile")});
        return issues;
    }
    xmlSchemaValidCtxtPtr validation = xmlSchemaNewValidCtxt(m_schema->schema);
    if (!validation) {
        xmlFreeDoc(doc);
        issues.append({0, QString(), QStringLiteral("validazione non disponibile")});
        return issues;
    }
    xmlSchemaSetValidStructuredErrors(validation, collectIssue, &issues);
    const int result = xmlSchemaValidateDoc(validation, doc);
    xmlSchemaFreeValidCtxt(validation);
    xmlFreeDoc(doc);
    if (result != 0 && issues.isEmpty())
        issues.append({0, QString(), QStringLiteral("documento non valido")});
    return issues;
}

QByteArray XsdValidator::paymentRequestSchema()
{
    QFile file(QStringLiteral(":/schemas/cbi/CBIPaymentRequest.00.04.01.xsd"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace pg::bankfile

#include "raggruppamento.h"

#include "core/vbformat.h"

#include <QHash>

namespace pg::distinta {

namespace {

// Sums as the database adds them: a missing amount makes the sum missing.
void addTo(std::optional<double> &sum, const std::optional<double> &value)
{
    sum = (sum && value) ? std::optional<double>(*sum + *value) : std::nullopt;
}

QString documentReference(const Riga &row)
{
    // Number and series, blank-filled or cut to seven characters.
    QString reference(7, u' ');
    qsizetype used = 0;
    for (const QString *part : {&row.des_num_doc, &row.des_serie_doc})
        for (qsizetype i = 0; i < part->size() && used < 7; ++i)
            reference[used++] = part->at(i);
    return reference;
}

const QString Overlong(31, u'X');

} // namespace

QString defaultGroupDescriptionTemplate()
{
    return QStringLiteral("Pagamentio NNN Scadenze").leftJustified(30, u' ', true);
}

namespace {

// Puts the new grouped rows in place of the old ones, keeping every old row that comes out
// the same: a save after regrouping then writes only the payments that changed.
void replaceGroups(RecordSet<Riga> &groups, const RecordSet<Riga> &rebuilt)
{
    int i = 0;
    for (; i < rebuilt.size(); ++i) {
        if (i >= groups.size())
            groups.append(rebuilt.at(i));
        else if (!(groups.at(i) == rebuilt.at(i)))
            groups.replace(i, rebuilt.at(i));
    }
    while (groups.size() > i)
        groups.removeAt(groups.size() - 1);
}

} // namespace

void raggruppaRighe(Distinta &distinta, const QString &groupTemplate)
{
    RecordSet<Riga> groups;

    QHash<QString, int> groupOf;
    QString description;
    QString lastReference;
    qint16 documents = 0;

    const RecordSet<Riga> &rows = distinta.righe;
    for (int i = 0; i < rows.size(); ++i) {
        const Riga &row = rows.at(i);
        // The three parts are separated by a character no code contains; the key is built in
        // one piece, as it is made for every row.
        QString key;
        key.reserve(row.cod_clifor.size() + row.cod_banca_cli.size() + row.cod_agenzia_cli.size() +
                    2);
        key += row.cod_clifor;
        key += u'\x1f';
        key += row.cod_banca_cli;
        key += u'\x1f';
        key += row.cod_agenzia_cli;
        int g = groupOf.value(key, -1);
        if (g < 0) {
            g = groups.append(row);
            groupOf.insert(key, g);
            lastReference = documentReference(row);
            documents = 1;
            description = row.flg_des_alt == u"X"
                              ? Overlong
                              : QStringLiteral("Vs.Fatt.") + row.des_num_doc.trimmed();
        } else {
            Riga &group = groups.edit(g);
            const QString reference = documentReference(row);
            if (reference != lastReference) {
                documents = vb::cint(double(documents) + 1);
                lastReference = reference;
                description = row.flg_des_alt == u"X"
                                  ? Overlong
                                  : description.trimmed() + u'-' + row.des_num_doc.trimmed();
            }
            group.val_imp_dapag_val += row.val_imp_dapag_val;
            group.val_imp_residuo_val += row.val_imp_residuo_val;
            group.val_imp_pag_val += row.val_imp_pag_val;
            group.val_imp_dapag_eur += row.val_imp_dapag_eur;
            group.val_imp_residuo_eur += row.val_imp_residuo_eur;
            group.val_imp_pag_eur += row.val_imp_pag_eur;
            addTo(group.val_imp_indist_eur, row.val_imp_indist_eur);
            addTo(group.val_imp_indist_val, row.val_imp_indist_val);
        }
        if (documents > 1) {
            Riga &group = groups.edit(g);
            if (description.size() >= 31) {
                QString text = groupTemplate;
                text.replace(QStringLiteral("NNN"), vb::format(double(documents), u"000"));
                group.des_scadenza = text;
            } else {
                group.des_scadenza = description;
            }
        }
    }
    replaceGroups(distinta.righeRagg, groups);
}

} // namespace pg::distinta

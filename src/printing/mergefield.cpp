#include "mergefield.h"

#include <QHash>

namespace pg::printing {

namespace {

using Scope = MergeField::Scope;

MergeField doc(const char *name, const char *description)
{
    return {QString::fromLatin1(name), Scope::Documento, QString::fromUtf8(description)};
}

MergeField row(const char *name, const char *description)
{
    return {QString::fromLatin1(name), Scope::Riga, QString::fromUtf8(description)};
}

MergeField section(const char *name, const char *description)
{
    return {QString::fromLatin1(name), Scope::Sezione, QString::fromUtf8(description)};
}

} // namespace

const QList<MergeField> &MergeField::all()
{
    static const QList<MergeField> fields{
        doc("ragione_sociale_azienda", "Ragione sociale dell'azienda"),
        doc("indirizzo_azienda", "Indirizzo dell'azienda"),
        doc("cap_azienda", "CAP dell'azienda"),
        doc("citta_azienda", "Città dell'azienda"),
        doc("provincia_azienda", "Provincia dell'azienda (sigla)"),
        doc("codice_fiscale_azienda", "Codice fiscale dell'azienda"),
        doc("partita_iva_azienda", "Partita IVA dell'azienda"),
        doc("numero_distinta", "Numero della distinta"),
        doc("tipo_distinta", "Tipo della distinta: Fornitori o Clienti"),
        doc("stato_distinta", "Stato della distinta: Prova o Definitiva"),
        doc("data_creazione", "Data di creazione della distinta (gg/mm/aaaa)"),
        doc("data_valuta", "Data valuta fissa per il beneficiario (gg/mm/aaaa)"),
        doc("data_presentazione", "Data di presentazione indicata nella finestra di stampa "
                                  "(gg/mm/aaaa)"),
        doc("data_stampa", "Data in cui la distinta viene stampata (gg/mm/aaaa)"),
        doc("banca_presentazione", "Descrizione della banca/agenzia di presentazione"),
        doc("abi_presentazione", "Codice ABI della banca di presentazione"),
        doc("cab_presentazione", "Codice CAB dell'agenzia di presentazione"),
        doc("conto_ordinante", "Conto ordinante dell'azienda (conto addebitato)"),
        doc("iban_ordinante", "IBAN dell'azienda presso la banca di presentazione"),
        doc("codice_sia", "Codice SIA dell'azienda"),
        doc("riferimenti", "Riferimenti del mittente presso la banca"),
        doc("valuta", "Codice della valuta della distinta"),
        doc("descrizione_valuta", "Descrizione della valuta della distinta"),
        doc("tipo_stampa", "STAMPA DI PROVA oppure STAMPA DEFINITIVA"),
        doc("modalita_righe", "Scadenze in dettaglio oppure Scadenze raggruppate"),
        doc("numero_disposizioni", "Numero delle disposizioni (righe stampate)"),
        doc("numero_scadenze", "Numero delle scadenze della distinta"),
        doc("totale_importo", "Totale della distinta nella sua valuta (#.##0,00)"),
        doc("totale_importo_eur", "Totale della distinta in euro (#.##0,00)"),
        row("progressivo", "Numero progressivo della riga nella stampa"),
        row("codice_beneficiario", "Codice del fornitore o cliente"),
        row("ragione_sociale_beneficiario", "Ragione sociale del beneficiario"),
        row("indirizzo_beneficiario", "Indirizzo del beneficiario"),
        row("cap_beneficiario", "CAP del beneficiario"),
        row("citta_beneficiario", "Città del beneficiario"),
        row("provincia_beneficiario", "Provincia del beneficiario (sigla)"),
        row("partita_iva_beneficiario", "Partita IVA del beneficiario"),
        row("codice_fiscale_beneficiario", "Codice fiscale del beneficiario"),
        row("numero_documento", "Numero del documento"),
        row("serie_documento", "Serie del documento"),
        row("documento", "Numero e serie del documento (es. 120/A)"),
        row("data_documento", "Data del documento (gg/mm/aaaa)"),
        row("numero_protocollo", "Numero di protocollo del documento"),
        row("numero_rata", "Numero della rata"),
        row("data_scadenza", "Data di scadenza (gg/mm/aaaa)"),
        row("numero_effetto", "Numero dell'effetto"),
        row("tipo_pagamento", "Tipo di pagamento (Bonifico, Ricevuta bancaria, ...)"),
        row("abi_beneficiario", "Codice ABI della banca del beneficiario"),
        row("cab_beneficiario", "Codice CAB dell'agenzia del beneficiario"),
        row("conto_beneficiario", "Numero di conto corrente del beneficiario"),
        row("iban_beneficiario", "IBAN del beneficiario"),
        row("bic_beneficiario", "BIC (SWIFT) della banca del beneficiario"),
        row("banca_beneficiario", "Nome della banca del beneficiario"),
        row("agenzia_beneficiario", "Nome dell'agenzia del beneficiario"),
        row("coordinate_bancarie", "IBAN del beneficiario, oppure ABI, CAB e conto quando "
                                   "l'IBAN manca"),
        row("importo", "Importo pagato con la distinta, nella valuta della scadenza "
                       "(#.##0,00)"),
        row("importo_eur", "Importo pagato con la distinta, in euro (#.##0,00)"),
        row("valuta_riga", "Valuta della scadenza"),
        row("cambio", "Cambio della valuta della scadenza"),
        row("descrizione", "Descrizione del pagamento"),
        section("righe", "Blocco ripetuto per ogni scadenza (o per ogni pagamento "
                         "raggruppato): {{#righe}} ... {{/righe}}"),
        section("totali", "Blocco stampato solo con \"Stampa Riga Totali\": "
                          "{{#totali}} ... {{/totali}}"),
        section("prova", "Blocco stampato solo nella stampa di prova ({{#prova}} ... "
                         "{{/prova}}); {{^prova}} ... {{/prova}} solo nella definitiva"),
        section("raggruppate", "Blocco stampato solo con le scadenze raggruppate "
                               "({{#raggruppate}} ... {{/raggruppate}}); "
                               "{{^raggruppate}} ... {{/raggruppate}} solo in dettaglio"),
    };
    return fields;
}

const MergeField *MergeField::find(const QString &name)
{
    static const QHash<QString, const MergeField *> index = [] {
        QHash<QString, const MergeField *> byName;
        for (const MergeField &field : all())
            byName.insert(field.name, &field);
        return byName;
    }();
    return index.value(name, nullptr);
}

QString MergeField::scopeName(Scope scope)
{
    switch (scope) {
    case Scope::Documento:
        return QStringLiteral("Distinta");
    case Scope::Riga:
        return QStringLiteral("Riga");
    case Scope::Sezione:
        return QStringLiteral("Blocco");
    }
    return {};
}

} // namespace pg::printing

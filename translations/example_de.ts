<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>MainWindow</name>
    <message>
        <source>Monitoring receiver</source>
        <translation>Überwachungsempfänger</translation>
    </message>
    <message>
        <source>the schema doesn&apos;t allow this value</source>
        <translation>das Schema lässt diesen Wert nicht zu</translation>
    </message>
    <message>
        <source>it may not occur there that often</source>
        <translation>so oft darf es dort nicht vorkommen</translation>
    </message>
    <message>
        <source>a value of another kind is expected</source>
        <translation>dort wird ein Wert anderer Art erwartet</translation>
    </message>
    <message>
        <source>The report was dropped.</source>
        <translation>Der Bericht wurde verworfen.</translation>
    </message>
    <message>
        <source>The report was not saved: %1</source>
        <translation>Der Bericht wurde nicht gespeichert: %1</translation>
    </message>
    <message>
        <source>The schema can&apos;t be read.</source>
        <translation>Das Schema ist nicht lesbar.</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Gespeichert als %1.</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot; was not written: %3.</source>
        <translation>%1: „%2“ wurde nicht geschrieben: %3.</translation>
    </message>
    <message>
        <source>%1 has no value.</source>
        <translation>%1 hat keinen Wert.</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Bericht</translation>
    </message>
    <message>
        <source>As&amp;k for a comment</source>
        <translation>Nach &amp;Kommentar fragen</translation>
    </message>
    <message>
        <source>S&amp;chema...</source>
        <translation>S&amp;chema...</translation>
    </message>
    <message>
        <source>C&amp;hange folder...</source>
        <translation>&amp;Ordner wechseln...</translation>
    </message>
    <message>
        <source>Choose the schema of the reports</source>
        <translation>Schema der Berichte wählen</translation>
    </message>
    <message>
        <source>XML schemas (*.xsd)</source>
        <translation>XML-Schemas (*.xsd)</translation>
    </message>
    <message>
        <source>Choose the report folder</source>
        <translation>Berichtsordner wählen</translation>
    </message>
    <message>
        <source>Si&amp;gnals in the report</source>
        <translation>Si&amp;gnale im Bericht</translation>
    </message>
    <message>
        <source>&amp;Reports</source>
        <translation>&amp;Berichte</translation>
    </message>
    <message>
        <source>The report is waiting for its comment.</source>
        <translation>Der Bericht wartet auf seinen Kommentar.</translation>
    </message>
    <message>
        <source>No reports: the schema %1 does not exist.</source>
        <translation>Keine Berichte möglich: Das Schema %1 existiert nicht.</translation>
    </message>
    <message>
        <source>No reports: the name of the schema %1 does not end in &quot;.xsd&quot;.</source>
        <translation>Keine Berichte möglich: Der Name des Schemas %1 endet nicht auf „.xsd“.</translation>
    </message>
    <message>
        <source>No reports: the folder %1 does not exist.</source>
        <translation>Keine Berichte möglich: Der Ordner %1 existiert nicht.</translation>
    </message>
    <message>
        <source>Ready. Report folder: %1</source>
        <translation>Bereit. Berichtsordner: %1</translation>
    </message>
</context>
<context>
    <name>Panel</name>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>&amp;Name</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>&amp;Operator</source>
        <translation>Bed&amp;iener</translation>
    </message>
    <message>
        <source>Countr&amp;y</source>
        <translation>&amp;Land</translation>
    </message>
    <message>
        <source>Measurement</source>
        <translation>Messung</translation>
    </message>
    <message>
        <source>&amp;Frequency</source>
        <translation>&amp;Frequenz</translation>
    </message>
    <message>
        <source>&amp;Bandwidth</source>
        <translation>Bandb&amp;reite</translation>
    </message>
    <message>
        <source>&amp;Level</source>
        <translation>&amp;Pegel</translation>
    </message>
    <message>
        <source>A&amp;zimuth</source>
        <translation>&amp;Azimut</translation>
    </message>
    <message>
        <source>&amp;Modulation</source>
        <translation>&amp;Modulation</translation>
    </message>
    <message>
        <source>&amp;Status</source>
        <translation>&amp;Status</translation>
    </message>
    <message>
        <source>Receiver</source>
        <translation>Empfänger</translation>
    </message>
    <message>
        <source>&amp;Detector</source>
        <translation>De&amp;tektor</translation>
    </message>
    <message>
        <source>&amp;Attenuation</source>
        <translation>&amp;Dämpfung</translation>
    </message>
    <message>
        <source>&amp;Preamplifier</source>
        <translation>&amp;Vorverstärker</translation>
    </message>
</context>
<context>
    <name>Pictures</name>
    <message>
        <source>Carrier drifts by some 200 Hz within a minute.</source>
        <translation>Der Träger driftet in einer Minute um etwa 200 Hz.</translation>
    </message>
</context>
<context>
    <name>ReportList</name>
    <message>
        <source>There are no reports in this folder yet. Press the report button to make one.</source>
        <translation>In diesem Ordner liegen noch keine Berichte. Die Schaltfläche oben links erstellt einen.</translation>
    </message>
</context>
<context>
    <name>ReportTree</name>
    <message>
        <source>Element</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>Attribute</translation>
    </message>
    <message>
        <source>Choose a report above to see here what is in it.</source>
        <translation>Wählen Sie oben einen Bericht, um hier zu sehen, was darin steht.</translation>
    </message>
</context>
<context>
    <name>ReportView</name>
    <message>
        <source>&amp;Tree</source>
        <translation>Ba&amp;um</translation>
    </message>
    <message>
        <source>&amp;XML</source>
        <translation>&amp;XML</translation>
    </message>
</context>
<context>
    <name>ShownValue</name>
    <message>
        <source>Average</source>
        <translation>Mittelwert</translation>
    </message>
    <message>
        <source>Peak</source>
        <translation>Spitzenwert</translation>
    </message>
    <message>
        <source>RMS</source>
        <translation>Effektivwert</translation>
    </message>
    <message>
        <source>Sample</source>
        <translation>Abtastwert</translation>
    </message>
    <message>
        <source>licensed</source>
        <translation>genehmigt</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>unlicensed</source>
        <translation>nicht genehmigt</translation>
    </message>
</context>
<context>
    <name>SignalTable</name>
    <message>
        <source>MHz</source>
        <translation>MHz</translation>
    </message>
    <message>
        <source>kHz</source>
        <translation>kHz</translation>
    </message>
    <message>
        <source>dBµV</source>
        <translation>dBµV</translation>
    </message>
    <message>
        <source>Azimuth</source>
        <translation>Azimut</translation>
    </message>
    <message>
        <source>Modulation</source>
        <translation>Modulation</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>No signals are noted: a report takes what is measured when it is made.</source>
        <translation>Es sind keine Signale notiert: Ein Bericht enthält, was bei seiner Erstellung gemessen wird.</translation>
    </message>
    <message>
        <source>Add what &amp;is measured</source>
        <translation>Messung &amp;hinzufügen</translation>
    </message>
    <message>
        <source>Remo&amp;ve</source>
        <translation>&amp;Entfernen</translation>
    </message>
</context>
</TS>

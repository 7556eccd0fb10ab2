<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>MainWindow</name>
    <message>
        <source>Monitoring receiver</source>
        <translation>Récepteur de surveillance</translation>
    </message>
    <message>
        <source>the schema doesn&apos;t allow this value</source>
        <translation>le schéma n’admet pas cette valeur</translation>
    </message>
    <message>
        <source>it may not occur there that often</source>
        <translation>il ne peut pas y figurer si souvent</translation>
    </message>
    <message>
        <source>a value of another kind is expected</source>
        <translation>une valeur d’un autre type y est attendue</translation>
    </message>
    <message>
        <source>The report was dropped.</source>
        <translation>Le rapport a été abandonné.</translation>
    </message>
    <message>
        <source>The report was not saved: %1</source>
        <translation>Le rapport n’a pas été enregistré&#xa0;: %1</translation>
    </message>
    <message>
        <source>The schema can&apos;t be read.</source>
        <translation>Le schéma est illisible.</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Enregistré sous %1.</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot; was not written: %3.</source>
        <translation>%1&#xa0;: «&#xa0;%2&#xa0;» n’a pas été écrit&#xa0;: %3.</translation>
    </message>
    <message>
        <source>%1 has no value.</source>
        <translation>%1 n’a pas de valeur.</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Rapport</translation>
    </message>
    <message>
        <source>As&amp;k for a comment</source>
        <translation>Demander un &amp;commentaire</translation>
    </message>
    <message>
        <source>S&amp;chema...</source>
        <translation>Sc&amp;héma...</translation>
    </message>
    <message>
        <source>C&amp;hange folder...</source>
        <translation>Changer de d&amp;ossier...</translation>
    </message>
    <message>
        <source>Choose the schema of the reports</source>
        <translation>Choisir le schéma des rapports</translation>
    </message>
    <message>
        <source>XML schemas (*.xsd)</source>
        <translation>Schémas XML (*.xsd)</translation>
    </message>
    <message>
        <source>Choose the report folder</source>
        <translation>Choisir le dossier des rapports</translation>
    </message>
    <message>
        <source>Si&amp;gnals in the report</source>
        <translation>Si&amp;gnaux du rapport</translation>
    </message>
    <message>
        <source>&amp;Reports</source>
        <translation>&amp;Rapports</translation>
    </message>
    <message>
        <source>The report is waiting for its comment.</source>
        <translation>Le rapport attend son commentaire.</translation>
    </message>
    <message>
        <source>No reports: the schema %1 does not exist.</source>
        <translation>Aucun rapport possible&#xa0;: le schéma %1 n’existe pas.</translation>
    </message>
    <message>
        <source>No reports: the name of the schema %1 does not end in &quot;.xsd&quot;.</source>
        <translation>Aucun rapport possible&#xa0;: le nom du schéma %1 ne se termine pas par «&#xa0;.xsd&#xa0;».</translation>
    </message>
    <message>
        <source>No reports: the folder %1 does not exist.</source>
        <translation>Aucun rapport possible&#xa0;: le dossier %1 n’existe pas.</translation>
    </message>
    <message>
        <source>Ready. Report folder: %1</source>
        <translation>Prêt. Dossier des rapports&#xa0;: %1</translation>
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
        <translation>&amp;Nom</translation>
    </message>
    <message>
        <source>&amp;Operator</source>
        <translation>Opérat&amp;eur</translation>
    </message>
    <message>
        <source>Countr&amp;y</source>
        <translation>Pa&amp;ys</translation>
    </message>
    <message>
        <source>Measurement</source>
        <translation>Mesure</translation>
    </message>
    <message>
        <source>&amp;Frequency</source>
        <translation>&amp;Fréquence</translation>
    </message>
    <message>
        <source>&amp;Bandwidth</source>
        <translation>&amp;Largeur de bande</translation>
    </message>
    <message>
        <source>&amp;Level</source>
        <translation>N&amp;iveau</translation>
    </message>
    <message>
        <source>A&amp;zimuth</source>
        <translation>A&amp;zimut</translation>
    </message>
    <message>
        <source>&amp;Modulation</source>
        <translation>Mo&amp;dulation</translation>
    </message>
    <message>
        <source>&amp;Status</source>
        <translation>S&amp;tatut</translation>
    </message>
    <message>
        <source>Receiver</source>
        <translation>Récepteur</translation>
    </message>
    <message>
        <source>&amp;Detector</source>
        <translation>Détecte&amp;ur</translation>
    </message>
    <message>
        <source>&amp;Attenuation</source>
        <translation>&amp;Atténuation</translation>
    </message>
    <message>
        <source>&amp;Preamplifier</source>
        <translation>&amp;Préamplificateur</translation>
    </message>
</context>
<context>
    <name>Pictures</name>
    <message>
        <source>Carrier drifts by some 200 Hz within a minute.</source>
        <translation>La porteuse dérive d’environ 200 Hz en une minute.</translation>
    </message>
</context>
<context>
    <name>ReportList</name>
    <message>
        <source>There are no reports in this folder yet. Press the report button to make one.</source>
        <translation>Ce dossier ne contient pas encore de rapports. Le bouton en haut à gauche en crée un.</translation>
    </message>
</context>
<context>
    <name>ReportTree</name>
    <message>
        <source>Element</source>
        <translation>Élément</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>Attributs</translation>
    </message>
    <message>
        <source>Choose a report above to see here what is in it.</source>
        <translation>Choisissez un rapport ci-dessus pour en voir ici le contenu.</translation>
    </message>
</context>
<context>
    <name>ReportView</name>
    <message>
        <source>&amp;Tree</source>
        <translation>Ar&amp;bre</translation>
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
        <translation>Moyenne</translation>
    </message>
    <message>
        <source>Peak</source>
        <translation>Crête</translation>
    </message>
    <message>
        <source>RMS</source>
        <translation>Valeur efficace</translation>
    </message>
    <message>
        <source>Sample</source>
        <translation>Échantillon</translation>
    </message>
    <message>
        <source>licensed</source>
        <translation>autorisé</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnu</translation>
    </message>
    <message>
        <source>unlicensed</source>
        <translation>non autorisé</translation>
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
        <translation>Statut</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Heure</translation>
    </message>
    <message>
        <source>No signals are noted: a report takes what is measured when it is made.</source>
        <translation>Aucun signal n’est noté&#xa0;: un rapport contient ce qui est mesuré au moment où il est créé.</translation>
    </message>
    <message>
        <source>Add what &amp;is measured</source>
        <translation>Ajouter la &amp;mesure</translation>
    </message>
    <message>
        <source>Remo&amp;ve</source>
        <translation>&amp;Supprimer</translation>
    </message>
</context>
</TS>

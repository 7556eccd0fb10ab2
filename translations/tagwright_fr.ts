<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>CommentDialog</name>
    <message>
        <source>Comment</source>
        <translation>Commentaire</translation>
    </message>
    <message>
        <source>Frequency:</source>
        <translation>Fréquence&#xa0;:</translation>
    </message>
    <message>
        <source>Level:</source>
        <translation>Niveau&#xa0;:</translation>
    </message>
    <message>
        <source>Bandwidth:</source>
        <translation>Largeur de bande&#xa0;:</translation>
    </message>
    <message>
        <source>Time:</source>
        <translation>Heure&#xa0;:</translation>
    </message>
    <message>
        <source>Azimuth:</source>
        <translation>Azimut&#xa0;:</translation>
    </message>
    <message>
        <source>Comment:</source>
        <translation>&amp;Commentaire&#xa0;:</translation>
    </message>
    <message>
        <source>comment</source>
        <translation>commentaire</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>No Comment</source>
        <translation>&amp;Sans commentaire</translation>
    </message>
</context>
<context>
    <name>CommentDialogImpl</name>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
    <message>
        <source>You have enterd a comment. Would you like to save it?</source>
        <translation>Vous avez saisi un commentaire. Voulez-vous l’enregistrer&#xa0;?</translation>
    </message>
    <message>
        <source>The report could not be saved: %1
Try again, or press Escape to close without a report.</source>
        <translation>Le rapport n’a pas pu être enregistré&#xa0;: %1
Réessayez, ou fermez sans rapport avec Échap.</translation>
    </message>
</context>
<context>
    <name>VCReporting</name>
    <message>
        <source>To Report (Shift+F10)</source>
        <translation>Créer un rapport (Maj+F10)</translation>
    </message>
</context>
</TS>

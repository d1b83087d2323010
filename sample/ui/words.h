/* Numbers of the texts that every program of the host with a window carries, for their code and resource
 * scripts. */
#ifndef PMX_SAMPLE_WORDS_H
#define PMX_SAMPLE_WORDS_H

#define IDS_DOCUMENT_TITLE 7000
#define IDS_DOCUMENT_SUBTITLE 7001
#define IDS_SECTION_1 7002
#define IDS_SECTION_2 7003
#define IDS_SECTION_3 7004
#define IDS_BLANK 7005

/* One text for each value of an enumeration of the attribute table, in its order. */
#define IDS_PAPER 7010
#define IDS_ORIENTATION 7020
#define IDS_SIDES 7030
#define IDS_EDGE 7040
#define IDS_BOOKLET 7050
#define IDS_STAPLE 7060
#define IDS_PUNCH 7070
#define IDS_FOLD 7080
#define IDS_COLOR 7090
#define IDS_NUMBER_PLACE 7100
#define IDS_COVER 7110
#define IDS_QUALITY 7120
#define IDS_SEPARATOR 7130
#define IDS_PAPER_SOURCE 7140
#define IDS_MEDIA 7150
#define IDS_SHEET_COLOR 7160
#define IDS_NUMBER_FORMAT 7170
#define IDS_SECTION_START 7180
#define IDS_INSERTION 7190
#define IDS_PAGES 7200
#define IDS_ORDER 7210
#define IDS_LINE 7220
#define IDS_SCALING 7230
#define IDS_PLACE 7240
#define IDS_ROTATION 7250
#define IDS_STRENGTH 7260

#endif

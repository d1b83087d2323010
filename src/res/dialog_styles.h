/* Styles of the dialogs and their controls, for the resource scripts of every language. */
#ifndef PMX_DIALOG_STYLES_H
#define PMX_DIALOG_STYLES_H

#define DIALOG_STYLE                                                                                         \
    DS_SETFONT | DS_MODALFRAME | DS_CENTER | DS_CONTEXTHELP | WS_POPUP | WS_CAPTION | WS_SYSMENU
#define LABEL SS_LEFT
#define BUTTON BS_PUSHBUTTON | WS_TABSTOP
#define EDIT ES_LEFT | ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP | WS_GROUP
#define REPORT_LIST LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_BORDER | WS_TABSTOP | WS_GROUP
#define ICON_LIST                                                                                            \
    LVS_ICON | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_AUTOARRANGE | LVS_NOCOLUMNHEADER | WS_BORDER |        \
        WS_TABSTOP | WS_GROUP
#define ICON_BOX SS_ICON | WS_BORDER

#endif

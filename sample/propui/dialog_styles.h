/* Styles of the dialog, its tabs and their controls, for the resource scripts of every language. */
#ifndef PMX_PROPUI_DIALOG_STYLES_H
#define PMX_PROPUI_DIALOG_STYLES_H

#define FRAME_STYLE DS_SETFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU
#define TAB_STYLE DS_SETFONT | DS_CONTROL | WS_CHILD
#define TAB_WIDTH 301
#define TAB_HEIGHT 202
#define COMBO CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP
#define NUMBER_BOX ES_RIGHT | ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP
#define WORDS_BOX ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif

#endif

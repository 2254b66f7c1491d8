"""What a settings file is given where there was none: the keys in their order, 1 on and 0 off."""

DEFAULT_SETTINGS = {
    "altRightZoom": 1,
    "mClickXForms": 1,
    "hideMClickXForms": 0,
    "useShiftClone": 1,
    "focusViewports": 1,
    "lockArcRotateOrtho": 1,
    "lockArcRotateUser": 0,
    "slowZooming": 1,
    "altLeftArcRotate": 1,
    "customSelectionCursors": 1,
    "useMayaStyle": 1,
}

.pragma library

// The light palette of the forms, close to a native preferences window.
var window = "#ececee"
var box = "#ffffff"
var boxBorder = "#d9d9dd"
var separator = "#e6e6ea"
var primary = "#1d1d1f"
var secondary = "#6e6e73"
var tertiary = "#a1a1a6"
var accent = "#0a6cff"
var accentPressed = "#0057d6"
var green = "#28b446"
var orange = "#f29100"
var red = "#e0352b"
var gray = "#8a8a90"
var grayPressed = "#747479"
var control = "#ffffff"
var controlPressed = "#e9e9ec"
var controlBorder = "#c8c8cd"
var track = "#d6d6db"
var bordered = "#e4e4e8"
var borderedPressed = "#d4d4d9"

// Sizes of the platform's text styles, in pixels.
var body = 13
var callout = 12
var caption = 11
var title = 22
var title2 = 17
var sectionTitle = 13

function tint(name) {
    switch (name) {
    case "gray": return gray
    case "accent": return accent
    case "green": return green
    case "orange": return orange
    case "red": return red
    case "secondary": return secondary
    case "primary": return primary
    }
    return primary
}

// One of our symbols drawn in a colour ("#28b446"); the artwork itself is white.
function symbol(name, colour) {
    return "image://symbol/" + String(colour).replace("#", "").toLowerCase() + "/" + name
}

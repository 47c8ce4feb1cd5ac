"""Scripts run in applications that take the locale of their users."""

import locale

locale.setlocale(locale.LC_ALL, "")

"""Pygments lexer for parameter files (*.zon). Text that no rule matches becomes an Error token."""
import re

from pygments.lexer import RegexLexer, default, include
from pygments.token import Comment, Error, Keyword, Literal, Name, Number, Punctuation, String, Whitespace

MANTISSA = r"(?:[0-9]+\.?[0-9]*|\.[0-9]+)"


class ZonLexer(RegexLexer):
    name = "Parameter file"
    aliases = ["zon"]
    filenames = ["*.zon"]
    flags = re.IGNORECASE | re.ASCII
    tokens = {
        "common": [
            (r"[ \t\r\n\f\v]+", Whitespace),
            (r"(//|;)[^\n]*", Comment.Single),
            (r"/\*", Comment.Multiline, "block"),
            (r"(true|false)(?!\w)", Keyword.Constant),
            (r"endsect(?!\w)", Keyword),
            (r"default(?!\w)", Keyword.Declaration),
        ],
        "root": [
            include("common"),
            (r"[a-z]\w*", Name.Attribute),
            (r"\[", Punctuation, "header"),
            (r"[\]()=,+-]", Punctuation),
            (r"'", String.Single, "string"),
            (r"\{", Comment.Special, "remark"),
            (r"\|[^|\n]*\|", String.Other),
            (r"#[^#\n]*#", Literal.Date),
            (r"[|#][^\n]*", Error),  # not closed on its line
            (r"%([ \t]*([0-9]+(?![0-9.e])|[a-z]\w*))?", Name.Variable),
            # An e without digits after a number is an error, not the start of a name.
            (MANTISSA + r"e(?:[-+](?![0-9])|(?![-+0-9]))", Error),
            (MANTISSA + r"(?:e[-+]?[0-9]+)?", Number),
        ],
        # Also ends at a character that cannot be in it, so a missing ] does not colour the whole file.
        "header": [
            include("common"),
            (r"[a-z]\w*", Name.Class),
            (r"\]", Punctuation, "#pop"),
            (r"[()]", Punctuation),
            (r"[0-9_/]", Error),
            default("#pop"),
        ],
        "block": [(r"[^*/]+", Comment.Multiline), (r"/\*", Comment.Multiline, "#push"),
                  (r"\*/", Comment.Multiline, "#pop"), (r".", Comment.Multiline)],
        "remark": [(r"[^}]+", Comment.Special), (r"\}", Comment.Special, "#pop")],
        "string": [(r"''", String.Escape), (r"'", String.Single, "#pop"), (r"[^']+", String.Single)],
    }

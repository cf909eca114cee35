# SPDX-License-Identifier: Apache-2.0
"""Where a source of the library can be changed, and to what; the compiler's own parser finds it."""
import re
from bisect import bisect_left
from dataclasses import dataclass

from clang.cindex import CursorKind, Index, TokenKind, TypeKind

SWAPS = {
    "<": ["<="], "<=": ["<"], ">": [">="], ">=": [">"], "==": ["!="], "!=": ["=="],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"],
    "&": ["|"], "|": ["&"], "^": ["|"], "<<": [">>"], ">>": ["<<"], "&&": ["||"], "||": ["&&"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "%=": ["*="],
    "&=": ["|="], "|=": ["&="], "^=": ["|="], "<<=": [">>="], ">>=": ["<<="],
    "++": ["--"], "--": ["++"],
}
DROPPED_PREFIXES = {"!", "~", "-"}

FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
             CursorKind.DESTRUCTOR, CursorKind.CONVERSION_FUNCTION, CursorKind.FUNCTION_TEMPLATE}
CLASSES = {CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL, CursorKind.CLASS_TEMPLATE}
PLACES = FUNCTIONS | CLASSES | {CursorKind.ENUM_DECL, CursorKind.VAR_DECL, CursorKind.FIELD_DECL}
INTEGERS = {TypeKind.CHAR_U, TypeKind.UCHAR, TypeKind.USHORT, TypeKind.UINT, TypeKind.ULONG,
            TypeKind.ULONGLONG, TypeKind.CHAR_S, TypeKind.SCHAR, TypeKind.SHORT, TypeKind.INT,
            TypeKind.LONG, TypeKind.LONGLONG}
LITERALS = {CursorKind.INTEGER_LITERAL, CursorKind.CXX_BOOL_LITERAL_EXPR}
NUMBER = re.compile(r"(0[xX])?([0-9a-fA-F']+?)([uUlL]*)$")


@dataclass(frozen=True, order=True)
class Mutant:
    """The bytes from `start` to `end` of a file are replaced."""
    file: str
    start: int
    end: int
    replacement: str
    place: str   # the function, table, class or enumeration around it
    line: int
    original: str
    before: str  # the line, or the lines, as they are and as they become
    after: str
    nth: int = 1  # among those of the place whose lines read the same
    of: int = 1

    @property
    def folder(self):
        return self.file.split("/")[1]

    @property
    def change(self):
        if not self.replacement:
            return f"{one_line(self.original)} removed"
        return f"{one_line(self.original)} -> {one_line(self.replacement)}"

    @property
    def identity(self):
        return (self.file, self.place, self.before, self.after)


def one_line(text):
    return " ".join(text.split())


def mutants_of(root, file, arguments):
    """All mutants of a file, in the order in which they stand."""
    return FilePositions(root, file, arguments).mutants()


class FilePositions:
    def __init__(self, root, file, arguments):
        self.file = file
        self.path = str(root / file)
        self.content = (root / file).read_bytes()
        unit = Index.create().parse(self.path, args=arguments)
        errors = [d for d in unit.diagnostics if d.severity >= d.Error]
        if errors:
            raise RuntimeError(f"{file} cannot be parsed: {errors[0]}")
        self.root_cursor = unit.cursor
        # Of the file itself: a macro's inside is not among them, nor is a comment after this.
        self.tokens = {
            t.extent.start.offset: t
            for t in unit.get_tokens(extent=unit.cursor.extent)
            if t.kind != TokenKind.COMMENT
        }
        self.starts = sorted(self.tokens)
        self.by_end = {t.extent.end.offset: t for t in self.tokens.values()}
        self.found = set()

    def mutants(self):
        for child in self.root_cursor.get_children():
            location = child.location
            if location.file is not None and location.file.name == self.path:
                self.visit(child, "")
        mutants = [self.mutant(*each) for each in sorted(self.found)]
        groups = {}
        for mutant in mutants:
            groups.setdefault(mutant.identity, []).append(mutant)
        return [
            Mutant(**{**vars(m), "nth": groups[m.identity].index(m) + 1,
                      "of": len(groups[m.identity])})
            for m in mutants
        ]

    def mutant(self, start, end, replacement, place):
        first = self.content.rfind(b"\n", 0, start) + 1
        last = self.content.find(b"\n", end)
        text = lambda begin, stop: self.content[begin:stop].decode()
        before = text(first, last)
        after = text(first, start) + replacement + text(end, last)
        return Mutant(self.file, start, end, replacement, place,
                      self.content.count(b"\n", 0, start) + 1, text(start, end),
                      one_line(before), one_line(after))

    # What a node of the syntax tree lets one change.

    def visit(self, cursor, place):
        kind = cursor.kind
        if kind == CursorKind.STATIC_ASSERT:
            return
        if kind in PLACES and (kind not in (CursorKind.VAR_DECL, CursorKind.FIELD_DECL)
                               or not self.is_within_function(cursor)):
            place = self.name_of(cursor, place)
        children = list(cursor.get_children())
        if kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR):
            if len(children) == 2:
                self.swap(self.token_after(children[0].extent.end.offset), place)
        elif kind == CursorKind.UNARY_OPERATOR:
            self.unary(cursor, place)
        elif kind == CursorKind.CALL_EXPR and cursor.spelling.startswith("operator"):
            self.overloaded(cursor, children, place)
        elif kind == CursorKind.INTEGER_LITERAL:
            self.number(cursor, place)
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            token = self.tokens.get(cursor.extent.start.offset)
            if token is not None and token.spelling in ("true", "false"):
                self.add_token(token, "false" if token.spelling == "true" else "true", place)
        elif kind == CursorKind.RETURN_STMT and children:
            self.returned(children[0], place)
        self.condition(cursor, children, place)
        for statement in self.statements(cursor, children):
            self.removal(statement, place)
        for child in children:
            self.visit(child, place)

    def unary(self, cursor, place):
        first = self.tokens.get(cursor.extent.start.offset)
        last = self.token_before(cursor.extent.end.offset)
        for token in (first, last):
            if token is not None and token.spelling in ("++", "--"):
                self.swap(token, place)
                return
        if first is not None and first.spelling in DROPPED_PREFIXES:
            self.add_token(first, "", place)

    def overloaded(self, cursor, children, place):
        if "basic_string" in cursor.type.get_canonical().spelling:
            return  # texts can be added and nothing else
        for child in children:
            while child.kind == CursorKind.UNEXPOSED_EXPR:
                inner = list(child.get_children())
                if len(inner) != 1:
                    break
                child = inner[0]
            if child.kind == CursorKind.DECL_REF_EXPR and child.spelling == cursor.spelling:
                self.swap(self.tokens.get(child.extent.start.offset), place)

    def number(self, cursor, place):
        token = self.tokens.get(cursor.extent.start.offset)
        found = NUMBER.match(token.spelling) if token is not None else None
        if found is None or token.kind != TokenKind.LITERAL:
            return
        prefix, digits, suffix = found.groups()
        digits = digits.replace("'", "")
        value = int(digits, 16 if prefix else 10)
        for changed in (value + 1, value - 1):
            if changed >= 0:
                text = f"{prefix}{changed:0{len(digits)}X}" if prefix else str(changed)
                self.add_token(token, text + suffix, place)

    def returned(self, expression, place):
        inner = self.stripped(expression)
        kind = expression.type.get_canonical().kind
        begin, end = self.range_of(expression)
        if begin is None or inner.kind in LITERALS:
            return
        text = self.content[begin:end].decode()
        if kind == TypeKind.BOOL:
            if not self.is_negated_elsewhere(inner):
                self.add(begin, end, f"!({text})", place)
        elif kind in INTEGERS:
            if not (inner.kind == CursorKind.UNARY_OPERATOR
                    and self.stripped(next(inner.get_children())).kind in LITERALS):
                self.add(begin, end, f"({text}) + 1", place)
        elif kind == TypeKind.POINTER and text != "nullptr":
            self.add(begin, end, "nullptr", place)

    def condition(self, cursor, children, place):
        kind = cursor.kind
        expression = None
        if kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.CONDITIONAL_OPERATOR):
            expression = next((c for c in children if c.kind.is_expression()), None)
        elif kind == CursorKind.DO_STMT:
            expression = children[-1]
        elif kind == CursorKind.FOR_STMT:
            expression = self.condition_of_for(cursor, children)
        if expression is None:
            return
        begin, end = self.range_of(expression)
        if begin is not None and not self.is_negated_elsewhere(self.stripped(expression)):
            self.add(begin, end, f"!({self.content[begin:end].decode()})", place)

    def condition_of_for(self, cursor, children):
        depth = 0
        semicolons = []
        for offset in self.offsets(cursor.extent.start.offset, cursor.extent.end.offset):
            text = self.tokens[offset].spelling
            depth += text in ("(", "[", "{")
            depth -= text in (")", "]", "}")
            if text == ";" and depth == 1 and len(semicolons) < 2:
                semicolons.append(offset)
        if len(semicolons) < 2:
            return None
        return next((c for c in children if c.kind.is_expression()
                     and semicolons[0] < c.extent.start.offset < semicolons[1]), None)

    def statements(self, cursor, children):
        """Children that stand as statements of their own."""
        kind = cursor.kind
        if kind == CursorKind.COMPOUND_STMT:
            return children
        if kind in (CursorKind.FOR_STMT, CursorKind.WHILE_STMT, CursorKind.CXX_FOR_RANGE_STMT,
                    CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT):
            return children[-1:]
        if kind == CursorKind.IF_STMT:
            condition = next((n for n, c in enumerate(children) if c.kind.is_expression()), 0)
            return children[condition + 1:]
        return []

    def removal(self, statement, place):
        inner = self.stripped(statement)
        kind = inner.kind
        removable = kind in (CursorKind.CALL_EXPR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR,
                             CursorKind.CXX_THROW_EXPR, CursorKind.CXX_DELETE_EXPR,
                             CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT)
        if kind == CursorKind.RETURN_STMT:
            removable = not list(inner.get_children())
        elif kind == CursorKind.UNARY_OPERATOR:
            removable = any(self.content[o:o + 2] in (b"++", b"--")
                            for o in self.offsets(*self.range_of(inner)))
        elif kind == CursorKind.BINARY_OPERATOR:
            sides = list(inner.get_children())
            token = self.token_after(sides[0].extent.end.offset) if len(sides) == 2 else None
            removable = token is not None and token.spelling == "="
        begin, end = self.range_of(statement)
        if removable and begin is not None:
            self.add(begin, end, "", place)

    # The text of it.

    def is_negated_elsewhere(self, inner):
        """A comparison whose other operator, or a negation whose absence, is the same mutant."""
        if inner.kind == CursorKind.UNARY_OPERATOR:
            return self.content[inner.extent.start.offset:][:1] == b"!"
        if inner.kind == CursorKind.CALL_EXPR:
            return inner.spelling in ("operator==", "operator!=", "operator!")
        if inner.kind == CursorKind.BINARY_OPERATOR:
            token = self.token_after(next(inner.get_children()).extent.end.offset)
            return token is not None and token.spelling in ("==", "!=")
        return inner.kind in LITERALS

    @staticmethod
    def stripped(cursor):
        while cursor.kind in (CursorKind.UNEXPOSED_EXPR, CursorKind.PAREN_EXPR):
            children = list(cursor.get_children())
            if len(children) != 1:
                break
            cursor = children[0]
        return cursor

    def range_of(self, cursor):
        """First and last offset; none inside a macro."""
        begin, end = cursor.extent.start.offset, cursor.extent.end.offset
        if begin < end and begin in self.tokens and self.token_before(end) is not None:
            return begin, end
        return None, None

    def offsets(self, begin, end):
        if begin is None:
            return []
        return self.starts[bisect_left(self.starts, begin):bisect_left(self.starts, end)]

    def token_after(self, offset):
        following = self.offsets(offset, len(self.content))[:1]
        return self.tokens[following[0]] if following else None

    def token_before(self, end):
        return self.by_end.get(end)

    @staticmethod
    def is_within_function(cursor):
        parent = cursor.semantic_parent
        return parent is not None and parent.kind in FUNCTIONS

    @staticmethod
    def name_of(cursor, place):
        name = cursor.spelling or "(unnamed)"
        parent = cursor.semantic_parent
        if cursor.kind in FUNCTIONS and parent is not None and parent.kind in CLASSES:
            return f"{parent.spelling}::{name}"
        return f"{place}::{name}" if place else name

    def swap(self, token, place):
        if token is not None:
            for other in SWAPS.get(token.spelling, []):
                self.add_token(token, other, place)

    def add_token(self, token, replacement, place):
        self.add(token.extent.start.offset, token.extent.end.offset, replacement, place)

    def add(self, begin, end, replacement, place):
        self.found.add((begin, end, replacement, place))

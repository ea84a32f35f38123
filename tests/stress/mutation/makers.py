"""Makes the mutants of a C++ source: what could have been written there by mistake, found in clang's syntax tree."""

import bisect
import dataclasses
import re

from clang import cindex
from clang.cindex import CursorKind, TokenKind, TypeKind

SWAPPED = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
    "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "<<": ">>", ">>": "<<", "&": "|", "|": "&", "^": "|",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "%=": "*=", "<<=": ">>=", ">>=": "<<=", "&=": "|=", "|=": "&=",
    "^=": "|=", "++": "--", "--": "++",
}
COMPARISONS = ("<", "<=", ">", ">=", "==", "!=")
LOOPS_AND_BRANCHES = {
    CursorKind.IF_STMT: "if", CursorKind.WHILE_STMT: "while", CursorKind.DO_STMT: "do", CursorKind.FOR_STMT: "for"}
# What stands in these is no behaviour: what must hold while compiling, and names of numbers that others fixed.
LEFT_ALONE = {CursorKind.STATIC_ASSERT, CursorKind.ENUM_DECL, CursorKind.FRIEND_DECL, CursorKind.USING_DIRECTIVE,
              CursorKind.NAMESPACE_ALIAS, CursorKind.TYPE_ALIAS_DECL, CursorKind.TYPEDEF_DECL}
STATEMENTS_TO_DELETE = {
    CursorKind.CALL_EXPR, CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR,
    CursorKind.UNARY_OPERATOR, CursorKind.CXX_THROW_EXPR, CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT,
    CursorKind.RETURN_STMT, CursorKind.UNEXPOSED_EXPR, CursorKind.CXX_DELETE_EXPR}
NUMBER = re.compile(rb"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)([uUlLzZ]*)")


@dataclasses.dataclass(frozen=True, order=True)
class Mutant:
    """The bytes from `start` to before `end` become `replacement`, which has as many lines."""

    start: int
    end: int
    kind: str  # negate, comparison, operator, constant, text, delete or swap
    replacement: bytes
    line: int  # of the first byte, from 1
    last_line: int

    def applied_to(self, source):
        return source[:self.start] + self.replacement + source[self.end:]


class Unreadable(Exception):
    """clang did not understand the source."""


def mutants_of(path, source, arguments):
    """All mutants of a source (its bytes, found at `path`), sorted. The arguments are those of the compiler. Raises
    Unreadable."""
    unit = cindex.Index.create().parse(path, args=arguments, unsaved_files=[(path, source.decode())])
    errors = [str(each) for each in unit.diagnostics if each.severity >= cindex.Diagnostic.Error]
    if errors:
        raise Unreadable("; ".join(errors[:3]))
    maker = Maker(path, source, unit)
    maker.walk_top()
    return sorted(maker.found)


class Maker:
    """Collects the mutants of one parsed source."""

    def __init__(self, path, source, unit):
        self.path = path
        self.source = source
        self.unit = unit
        self.found = set()
        self.line_starts = [0] + [match.end() for match in re.finditer(rb"\n", source)]
        self.tokens = [token for token in unit.get_tokens(extent=unit.cursor.extent)
                       if token.kind != TokenKind.COMMENT]
        self.token_starts = [token.extent.start.offset for token in self.tokens]

    def is_here(self, cursor):
        file = cursor.location.file
        return file is not None and file.name == self.path

    def walk_top(self):
        for cursor in self.unit.cursor.get_children():
            if self.is_here(cursor):
                self.walk(cursor, None, None)

    def walk(self, cursor, parent, grandparent):
        if cursor.kind in LEFT_ALONE:
            return
        if self.is_written(cursor):
            self.visit(cursor, parent, grandparent)
        for child in cursor.get_children():
            self.walk(child, cursor, parent)

    def is_written(self, cursor):
        """Whether the cursor's text stands in this file. That of what a macro makes is the macro's name."""
        start = cursor.extent.start
        return start.file is not None and start.file.name == self.path and bool(self.tokens_of(cursor.extent))

    def visit(self, cursor, parent, grandparent):
        kind = cursor.kind
        if kind in LOOPS_AND_BRANCHES:
            self.negate_condition(cursor)
        elif kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR):
            self.change_operator(cursor, SWAPPED)
        elif kind == CursorKind.UNARY_OPERATOR:
            self.change_unary(cursor)
        elif kind == CursorKind.CONDITIONAL_OPERATOR:
            self.negate(next(cursor.get_children()))
        elif kind == CursorKind.CALL_EXPR:
            self.change_call(cursor)
        elif kind == CursorKind.INTEGER_LITERAL:
            self.change_number(cursor)
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            text = self.text(cursor)
            self.replace(cursor.extent, "constant", {b"true": b"false", b"false": b"true"}.get(text, text))
        elif kind == CursorKind.CHARACTER_LITERAL:
            self.change_character(cursor)
        elif kind == CursorKind.STRING_LITERAL:
            self.change_text(cursor)
        elif kind == CursorKind.RETURN_STMT:
            self.negate_answer(cursor)
        if parent is not None and parent.kind == CursorKind.COMPOUND_STMT:
            self.delete_statement(cursor, grandparent)

    # The changes

    def negate(self, cursor):
        if self.is_written(cursor):
            self.replace(cursor.extent, "negate", b"!(" + self.text(cursor) + b")")

    def negate_condition(self, statement):
        """The condition alone, without what is declared before it."""
        words = self.tokens_of(statement.extent)
        keyword = LOOPS_AND_BRANCHES[statement.kind]
        if keyword == "do":
            opening = max(i for i, word in enumerate(words) if word.spelling == "while") + 1
        else:
            opening = 1
        if words[0].spelling != keyword or words[opening].spelling != "(":  # a macro; if constexpr
            return
        parts, depth, first = [], 0, opening + 1
        for i in range(opening, len(words)):
            depth += {"(": 1, "[": 1, "{": 1, ")": -1, "]": -1, "}": -1}.get(words[i].spelling, 0)
            if depth == 0 or (depth == 1 and words[i].spelling == ";"):
                parts.append(words[first:i])
                first = i + 1
            if depth == 0:
                break
        part = parts[1] if keyword == "for" and len(parts) == 3 else parts[-1]
        if not part:
            return
        start, end = part[0].extent.start.offset, part[-1].extent.end.offset
        if part[0].spelling == "!" and not any(word.spelling in SWAPPED for word in part):
            return  # the "!" alone is taken away
        if any(child.kind == CursorKind.VAR_DECL and start <= child.extent.start.offset < end
               for child in statement.get_children()):
            return
        self.replace_bytes(start, end, "negate", b"!(" + self.source[start:end] + b")")

    def negate_answer(self, statement):
        answer = next(statement.get_children(), None)
        if answer is None or answer.type.get_canonical().kind != TypeKind.BOOL:
            return
        if answer.kind not in (CursorKind.CXX_BOOL_LITERAL_EXPR, CursorKind.UNARY_OPERATOR):
            self.negate(answer)

    def change_operator(self, cursor, table):
        left, right = (list(cursor.get_children()) + [None, None])[:2]
        if left is None or right is None:
            return
        for token in self.tokens_of(cursor.extent):
            between = left.extent.end.offset <= token.extent.start.offset < right.extent.start.offset
            if between and token.spelling in table:
                kind = "comparison" if token.spelling in COMPARISONS else "operator"
                self.replace(token.extent, kind, table[token.spelling].encode())
                return

    def change_unary(self, cursor):
        words = self.tokens_of(cursor.extent)
        for word in (words[0], words[-1]):
            if word.spelling in ("++", "--"):
                self.replace(word.extent, "operator", SWAPPED[word.spelling].encode())
                return
        if words[0].spelling == "!":
            self.replace(words[0].extent, "negate", b"")

    def change_call(self, cursor):
        name = cursor.spelling
        if name.startswith("operator"):
            operator = name[len("operator"):]
            if operator in COMPARISONS:
                children = [child for child in cursor.get_children() if child.spelling != name]
                for token in self.tokens_of(cursor.extent):
                    if (token.spelling == operator and len(children) == 2
                            and children[0].extent.end.offset <= token.extent.start.offset
                            < children[1].extent.start.offset):
                        self.replace(token.extent, "comparison", SWAPPED[operator].encode())
            return
        arguments = [each for each in cursor.get_arguments() if each is not None and self.is_written(each)]
        for left, right in zip(arguments, arguments[1:]):
            if plain_type(left) == plain_type(right) and self.text(left) != self.text(right):
                start, end = left.extent.start.offset, right.extent.end.offset
                between = self.source[left.extent.end.offset:right.extent.start.offset]
                self.replace_bytes(start, end, "swap", self.text(right) + between + self.text(left))

    def change_number(self, cursor):
        match = NUMBER.fullmatch(self.text(cursor))
        if match is None:
            return
        digits, suffix = match[1].replace(b"'", b""), match[2]
        if len(digits) > 1 and digits.startswith(b"0") and digits[1:2] not in b"xX":
            return
        value = int(digits, 0)
        for other in (value + 1, value - 1):
            if other >= 0:
                text = hex(other) if digits[:2].lower() == b"0x" else str(other)
                self.replace(cursor.extent, "constant", text.encode() + suffix)

    def change_character(self, cursor):
        prefix, quote, inner = self.text(cursor).partition(b"'")
        if quote:
            self.replace(cursor.extent, "constant", prefix + (b"'x'" if inner != b"x'" else b"'y'"))

    def change_text(self, cursor):
        """Of literals that stand side by side, the first one."""
        token = self.tokens_of(cursor.extent)[0]
        prefix, quote, inner = token.spelling.encode().partition(b'"')
        if quote and not prefix.endswith(b"R"):
            self.replace(token.extent, "text", prefix + (b'""' if inner != b'"' else b'"x"'))

    def delete_statement(self, cursor, owner):
        if cursor.kind not in STATEMENTS_TO_DELETE:
            return
        if cursor.kind == CursorKind.RETURN_STMT:
            is_whole_function = owner is None or owner.kind not in LOOPS_AND_BRANCHES
            if is_whole_function and next(cursor.get_children(), None) is not None:
                return  # a function without an answer is no program
        text = self.text(cursor)
        self.replace(cursor.extent, "delete", b"{}" + b"\n" * text.count(b"\n"))

    # The text

    def text(self, cursor):
        return self.source[cursor.extent.start.offset:cursor.extent.end.offset]

    def tokens_of(self, extent):
        first = bisect.bisect_left(self.token_starts, extent.start.offset)
        last = bisect.bisect_left(self.token_starts, extent.end.offset)
        return self.tokens[first:last]

    def replace(self, extent, kind, replacement):
        self.replace_bytes(extent.start.offset, extent.end.offset, kind, replacement)

    def replace_bytes(self, start, end, kind, replacement):
        if self.source[start:end] != replacement:
            line = bisect.bisect_right(self.line_starts, start)
            last_line = bisect.bisect_right(self.line_starts, end - 1)
            self.found.add(Mutant(start, end, kind, replacement, line, last_line))


def plain_type(cursor):
    """What an argument is, whichever way it is passed."""
    kind = cursor.type.get_canonical()
    if kind.kind in (TypeKind.LVALUEREFERENCE, TypeKind.RVALUEREFERENCE):
        kind = kind.get_pointee()
    return kind.spelling.replace("const ", "")

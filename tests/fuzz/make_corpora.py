#!/usr/bin/python3
"""Writes the first samples of the fuzz targets that read documents or play runs, into tests/fuzz/corpus.

They are made of the built-in host, the pages of the manual and what stands here. What a fuzzer has found since lies
beside them, under the names that it gave; `-merge=1` leaves of it what covers something that nothing else does:

    build/fuzz/bin/fuzz_diff -merge=1 tests/fuzz/corpus/diff found
"""

import copy
import json
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]
CORPUS = ROOT / 'tests/fuzz/corpus'
HOST = json.loads((ROOT / 'simulator/default_host.json').read_text())
PAGES = sorted((ROOT / 'docs/manual').glob('*.md')) + [ROOT / 'docs/simulator.md', ROOT / 'docs/tavrohost.md']

ETHERNET, ISCSI, FCOE = '02-00-5E-10-00-00', '02-00-5E-10-00-02', '10:00:02:00:5E:10:00:04'


def write(target, name, text):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_text(text)


def line(value):
    return json.dumps(value, ensure_ascii=False, separators=(',', ':'))


def json_blocks():
    """The JSON documents of the pages."""
    for page in PAGES:
        for block in re.findall(r'^```json\n(.*?)^```', page.read_text(), re.M | re.S):
            yield json.loads(block)


def small_hosts():
    """One host for each adapter and family, the whole host and the one of the manual."""
    yield 'manual', next(block for block in json_blocks() if 'adapters' in block)
    for index, adapter in enumerate(HOST['adapters']):
        for family in ('ethernet', 'iscsi', 'fcoe'):
            host = {key: value for key, value in HOST.items() if key != 'adapters'}
            if family != 'iscsi':
                for key in ('iscsiTargets', 'initiator', 'isnsServers', 'reachable'):
                    host.pop(key, None)
            if family != 'fcoe':
                host.pop('fcoeFabric', None)
            chosen = copy.deepcopy(adapter)
            for port in chosen['ports']:
                port['functions'] = [function for function in port['functions'] if family in function]
            if any(port['functions'] for port in chosen['ports']):
                yield f'{family}_{index}', host | {'adapters': [chosen]}


def pending():
    host = next(block for block in json_blocks() if 'adapters' in block)
    host['adapters'][0]['ports'][0]['resources'] = {
        'personality': 'iSCSI', 'pendingPersonality': 'FCoE', 'completionCode': 201}
    host['adapters'][0]['pendingPartitions'] = {
        'mode': 'MF', 'flowControl': ['Auto'] * 4,
        'functions': [{'personality': 'FCoE', 'lowerLimit': '10', 'upperLimit': '100'}]}
    return host


def captured():
    made = next(block for block in json_blocks() if 'adapters' in block)
    return made | {'captured': {
        'answers': [
            {'call': 'GetHostName', 'status': 0, 'output': 'server-7'},
            {'call': 'DoOperation', 'operation': 70, 'request': ETHERNET, 'status': 0, 'output': '6'},
            {'call': 'DoOperation', 'operation': 2, 'request': ISCSI, 'status': 9, 'error': {'code': 9}}],
        'host': made}}


def hosts():
    found = dict(small_hosts())
    found['pending'] = pending()
    found['captured'] = captured()
    return found


def diffs(all_hosts):
    for name, host in all_hosts.items():
        other = copy.deepcopy(host)
        other.pop('captured', None)
        other['name'] += '-2'
        other['adapters'][0]['ports'].reverse()
        other['adapters'][0]['ports'][0]['functions'].reverse()
        host = {key: value for key, value in host.items() if key != 'captured'}
        yield name, [host, other]


SCRIPTS = {
    'numbers': {'messages': 'numbers', 'model': False, 'comment': 'one', 'answers': [
        {'call': 'GetHostName', 'output': 'server-7'},
        {'call': 'DoOperation', 'operation': 70, 'request': ETHERNET, 'output': '6', 'times': 1},
        {'call': 'DoOperation', 'status': 5, 'error': {'code': 5, 'message': 'The adapter does not answer.'}}]},
    'adapters': {'answers': [
        {'call': 'Initialize', 'debug': 0, 'locale': 'C'},
        {'call': 'GetDiscoveredAdapters', 'output': [['Tavro CNA 4610K', 0, ['Port 1']]]},
        {'call': 'GetPortWWNs', 'adapter': 'Tavro CNA 4610K', 'port': 'Port 1', 'output': [[], []]},
        {'call': 'GetPartitionState', 'request': ETHERNET, 'output': 3},
        {'call': 'GetAdapterType', 'output': 'CNA'}, {'call': 'GetAdapterPortNumber', 'output': 4},
        {'call': 'GetLocalizeMessage', 'output': 'x', 'times': 3}]},
    'refusals': {'answers': [
        {'call': call, 'status': 36865, 'times': 2, 'error': {
            'code': 1, 'message': 'm', 'action': 'a', 'additional': 'b', 'details': 'd'}}
        for call in ('Uninitialize', 'GetHostName', 'GetPortWWNs', 'GetLastErrorMessage')]},
}


def partition_answers():
    return next(json.loads(text) for page in PAGES
                for text in re.findall(r'\$ cat partition.json\n(\{.*?^\})', page.read_text(), re.M | re.S))


ANSWERS = {
    'one': {'format': 1, 'answers': [{'message': 29197, 'answers': ['y']}]},
    'prompt': {'format': 1, 'answers': [
        {'prompt': 'New Value (500~1500, step: 1) :', 'answers': ['600', '', '700'], 'repeat': True}]},
    'secrets': {'format': 1, 'answers': [
        {'message': 29054, 'answers': [{'file': 'tavrocli.log'}, {'environment': 'LC_ALL'}, 'y']}]},
    'partition': partition_answers(),
}

COMMANDS = [
    ['-showadapter'], ['-about'], ['-help'], ['-iscsi', '-getinitiator'], ['-import'], ['-iscsi', '-isns', '-listall'],
    ['-iscsi', ISCSI, '-target', '-listall'], ['-iscsi', ISCSI, '-portal', '-add', '198.51.100.20', '-onewaychap'],
    ['-iscsi', ISCSI, '-modifytcpip', '-dhcp', '0'], ['-ethernet', ETHERNET, '-portstat'],
    ['-ethernet', ETHERNET, '-setadapinfo'], ['-iscsi', ISCSI, '-setbootconfig'], ['-fcoe', FCOE, '-setbootconfig'],
    ['-fcoe', FCOE, '-setdcb'], ['-fcoe', FCOE, '-getvirtualportinfo'], ['-npar', ETHERNET, '-set'],
    ['-res', ETHERNET, '-set'], ['-res', ETHERNET, '-get', '-debug']]


def runs():
    for number, command in enumerate(COMMANDS):
        typed = ['1', 'y', '2', 'n', 'secret-of-12', '3', '10', '', 'y'][number % 3:]
        lines = ['a' + word for word in command] + ['t' + word for word in typed]
        lines += [[], ['mt'], ['c....f', 'h1'], ['c....m.m', 'mb'], ['c....x']][number % 5]
        yield '-'.join(word.strip('-') for word in command if word not in (ETHERNET, ISCSI, FCOE))[:40], lines


def main():
    all_hosts = hosts()
    for name, host in all_hosts.items():
        write('host_file', name, line(host))
    for name, both in diffs(all_hosts):
        write('diff', name, line(both))
    for name, script in SCRIPTS.items():
        write('script', name, line(script))
    for name, answers in ANSWERS.items():
        write('answers', name, line(answers))
    for name, lines in runs():
        write('command_line', name, '\n'.join(lines) + '\n')
    example = (ROOT / 'docs/cnadiscovery.xml').read_text()
    write('import', 'example', example)
    write('import', 'short', re.sub(r'\s*<!--.*?-->|\n\s*', '', example, flags=re.S))
    write('import', 'cut', example[:len(example) // 2])


if __name__ == '__main__':
    main()

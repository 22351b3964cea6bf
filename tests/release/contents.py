#!/usr/bin/python3
"""contents.py OUT FOLDER: what a release in OUT, unpacked here into FOLDER, has and must not have."""
import hashlib
import json
import os
import re
import struct
import subprocess
import sys
import tarfile
import zipfile

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SYSTEM = {'KERNEL32.dll', 'USER32.dll', 'msvcrt.dll',
          'libc.so.6', 'libm.so.6', 'libstdc++.so.6', 'libgcc_s.so.1', 'libedit.so.2',
          'libuno_sal.so.3', 'libuno_cppu.so.3', 'libuno_cppuhelpergcc3.so.3', 'ld-linux-x86-64.so.2'}
NETWORK = {'socket', 'connect', 'bind', 'listen', 'accept', 'getaddrinfo', 'gethostbyname', 'sendto', 'recvfrom'}


def read(*path):
    with open(os.path.join(*path), 'rb') as file:
        return file.read()


def lines_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True, timeout=60).stdout.splitlines()


def unpack(out, folder):
    for name in os.listdir(out):
        target = os.path.join(folder, name)
        if name.endswith(('.zip', '.oxt')):
            zipfile.ZipFile(os.path.join(out, name)).extractall(target)
        elif name.endswith('.tgz'):
            tarfile.open(os.path.join(out, name)).extractall(target)
        elif name.endswith('.deb'):
            subprocess.run(['dpkg-deb', '-R', os.path.join(out, name), target], check=True, timeout=60)


def files_below(folder):
    return sorted(os.path.relpath(os.path.join(place, name), folder) for place, _, names in os.walk(folder) for name in names)


def check_sums(folder):
    """SHA256SUMS names every file but itself."""
    listed = dict(reversed(line.split('  ', 1)) for line in read(folder, 'SHA256SUMS').decode().splitlines())
    assert sorted(listed) == [name for name in files_below(folder) if name != 'SHA256SUMS'], listed
    for name, value in listed.items():
        assert hashlib.sha256(read(folder, name)).hexdigest() == value, name


def check_named_in_the_page(out, version):
    """docs/release.md lists what a release has, and nothing else."""
    page = read(ROOT, 'docs', 'release.md').decode().split('\n## ')[0]
    listed = {name.replace('VERSION', version) for name in re.findall(r'^\| `([^`]+)`', page, re.M)}
    assert listed == set(os.listdir(out)), listed ^ set(os.listdir(out))


def check_windows(folder, version):
    assert zipfile.ZipFile(os.path.join(folder, 'KESTRAN.xlsx')).testzip() is None
    for bits, machine in ('32', 0x14C), ('64', 0x8664):
        for addin in 'KESTRAN', 'KESTRAN12':
            path = os.path.join(folder, f'{bits}-bit', addin + '.xll')
            for end in ('.intellisense.xml', '.xll.intellisense.xml'):
                assert os.path.exists(path.removesuffix('.xll') + end), path
            content = read(path)
            head = struct.unpack_from('<I', content, 0x3C)[0]
            kind, _, time, _, symbols = struct.unpack_from('<HHIII', content, head + 4)
            assert (kind, time, symbols) == (machine, 0, 0), path
            numbers = struct.unpack_from('<HHHH', content, content.index(struct.pack('<I', 0xFEEF04BD)) + 8)
            assert '%d.%d.%d' % (numbers[1], numbers[0], numbers[3]) == version, path
            used = {line.split()[-1] for line in lines_of('objdump', '-p', path) if 'DLL Name' in line}
            assert used and used <= SYSTEM, (path, used)
            # What was optimised at link time has its names, too.
            assert b'kestran::binomial_mean' in read(ROOT, 'build', 'make-release', 'maps', f'{addin}-{bits}-bit.map'), path
    assert read(folder, 'KESTRAN-reference.pdf')[:5] == b'%PDF-'
    assert os.path.exists(os.path.join(folder, 'reference', 'EURO.html'))
    for name in files_below(folder):
        if name.endswith('.html') and os.path.dirname(name) == '':
            page = read(folder, name).decode()
            assert '<svg' in page or 'install' not in name
            for link in re.findall('(?:href|src)="([^"#]*)', page):
                assert not link or link.startswith('https:') or os.path.exists(os.path.join(folder, os.path.dirname(name), link)), (name, link)


def check_linux(folder):
    """Programs and libraries are stripped, use the system's alone, and know neither a network nor a folder of the build."""
    for name in files_below(folder):
        path = os.path.join(folder, name)
        if os.path.islink(path) or read(path)[:4] != b'\x7fELF':
            continue
        parts = lines_of('readelf', '-d', path)
        used = {re.search(r'\[(.*)\]', line)[1] for line in parts if '(NEEDED)' in line}
        assert used <= SYSTEM, (name, used)
        wanted = {line.split()[-1].split('@')[0] for line in lines_of('nm', '-D', '--undefined-only', path)}
        assert wanted and not wanted & NETWORK, (name, wanted & NETWORK)
        assert not any('RUNPATH' in line or 'RPATH' in line for line in parts), name
        assert not any('.symtab' in line or '.debug' in line for line in lines_of('readelf', '-SW', path)), name


def check_versions(out, folder, version):
    for name in os.listdir(out):
        if name.endswith('.deb'):
            assert lines_of('dpkg-deb', '-f', os.path.join(out, name), 'Version') == [version], name
    command = os.path.join(folder, f'kestran_{version}_amd64.deb', 'usr')
    assert lines_of(os.path.join(command, 'bin/kestran'), '--version') == ['kestran ' + version]
    assert f'Version: {version}\n' in read(command, 'lib/pkgconfig/kestran.pc').decode()
    assert os.path.exists(os.path.join(command, 'lib/libkestran.so.' + version))
    assert f'default_version = \'{version}\'' in read(folder, f'postgresql-15-kestran_{version}_amd64.deb',
                                                      'usr/share/postgresql/15/extension/kestran.control').decode()
    assert f'<version value="{version}"/>' in read(folder, 'KESTRAN.oxt', 'description.xml').decode()
    assert json.loads(read(folder, f'kestran-{version}.tgz', 'package/package.json'))['version'] == version
    python = os.path.join(folder, f'python3-kestran_{version}_amd64.deb', 'usr/lib/python3/dist-packages')
    program = 'import importlib.metadata, kestran; print(importlib.metadata.version("kestran"), kestran.__version__)'
    environment = dict(os.environ, PYTHONPATH=python, PYTHONDONTWRITEBYTECODE='1')
    said = subprocess.run(['/usr/bin/python3', '-c', program], env=environment, capture_output=True, text=True, check=True, timeout=60)
    assert said.stdout.split() == [version, version], said.stdout
    assert re.search('^## (.*)$', read(out, 'CHANGELOG.md').decode(), re.M)[1] == version


def check_bill_of_materials(out, folder, version):
    """By the rules of SPDX 2.3 that the document touches, and every other file of the release is in it."""
    bill = json.loads(read(out, f'KESTRAN-{version}.spdx.json'))
    assert (bill['spdxVersion'], bill['dataLicense'], bill['SPDXID']) == ('SPDX-2.3', 'CC0-1.0', 'SPDXRef-DOCUMENT')
    assert re.fullmatch(r'https://\S+', bill['documentNamespace']) and '#' not in bill['documentNamespace']
    assert re.fullmatch(r'\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ', bill['creationInfo']['created'])
    assert all(re.match('(Person|Organization|Tool): ', one) for one in bill['creationInfo']['creators'])
    names = [one['SPDXID'] for one in bill['packages']]
    assert len(set(names)) == len(names) and all(re.fullmatch('SPDXRef-[A-Za-z0-9.-]+', name) for name in names), names
    for one in bill['packages']:
        assert one['name'] and one['versionInfo'] and one['downloadLocation'] and one['filesAnalyzed'] is False, one
    for one in bill['relationships']:
        assert {one['spdxElementId'], one['relatedSpdxElement']} <= {*names, bill['SPDXID']}, one
    shipped = {one['packageFileName']: one for one in bill['packages'] if 'packageFileName' in one}
    addins = {f'{bits}-bit/{addin}.xll' for bits in (32, 64) for addin in ('KESTRAN', 'KESTRAN12')}
    assert set(shipped) - addins == set(os.listdir(out)) - {'CHANGELOG.md', 'SHA256SUMS', f'KESTRAN-{version}.spdx.json'}
    for name, one in shipped.items():
        sums = {sum['algorithm']: sum['checksumValue'] for sum in one['checksums']}
        content = read(*([folder, f'KESTRAN-{version}-windows.zip'] if name in addins else [out]), name)
        assert hashlib.sha256(content).hexdigest() == sums['SHA256'], name
        linked = [other for other in bill['relationships'] if other['spdxElementId'] == one['SPDXID']]
        assert name not in addins or len([other for other in linked if other['relationshipType'] == 'STATIC_LINK']) == 2, linked
    tools = {one['name'] for one in bill['packages']}
    assert {'g++-12', 'g++-mingw-w64-i686-win32', 'libcli11-dev', 'uplot', 'marked', 'duckdb'} <= tools, tools


def main():
    out, folder = sys.argv[1:]
    version = re.search('^project\\(KESTRAN VERSION ([0-9.]+)', read(ROOT, 'CMakeLists.txt').decode(), re.M)[1]
    unpack(out, folder)
    check_sums(out)
    check_sums(os.path.join(folder, f'KESTRAN-{version}-windows.zip'))
    check_named_in_the_page(out, version)
    check_windows(os.path.join(folder, f'KESTRAN-{version}-windows.zip'), version)
    check_linux(folder)
    check_versions(out, folder, version)
    check_bill_of_materials(out, folder, version)
    for name in files_below(folder):
        path = os.path.join(folder, name)
        assert os.path.islink(path) or ROOT.encode() not in read(path), f'{name} knows the folder it was built in'


if __name__ == '__main__':
    main()

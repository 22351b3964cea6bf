# shellcheck shell=bash
# The extension of PostgreSQL, for the version that Debian 12 has.
packages='binutils=strip dpkg-dev=dpkg-shlibdeps postgresql-server-dev-15=/usr/include/postgresql/15/server/fmgr.h'

make_product() {
  built linux kestran_postgres
  installed linux postgres
  packaged postgresql-15-kestran database postgresql-15 'Option pricing: the worksheet functions in PostgreSQL
An extension with the functions of the command kestran, in a schema of
that name.'
}

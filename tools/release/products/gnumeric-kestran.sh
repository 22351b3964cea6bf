# shellcheck shell=bash
# The plugin for Gnumeric, which loads those of its own version only: that of Debian 12.
packages='binutils=strip dpkg-dev=dpkg-shlibdeps gnumeric'

make_product() {
  local of
  of=$(dpkg-query -W -f '${source:Upstream-Version}' gnumeric)
  built linux kestran_gnumeric
  installed linux gnumeric
  packaged gnumeric-kestran math "gnumeric (>= $of), gnumeric (<< $of.1~)" \
    'Option pricing: the worksheet functions in Gnumeric
A plugin with the functions of the command kestran and their help.
Workbooks of Excel that call them open and calculate.'
}


// The first of the reader's languages that the shop speaks. Without a script its own first one.
(function (pages, here) {
  var wanted = navigator.languages || [navigator.language];
  for (var i = 0; i < wanted.length; ++i) {
    var tag = String(wanted[i]).replace('-', '_');
    var page = pages[tag] || pages[tag.split('_')[0]];
    if (page) {
      if (page !== here) location.replace(page + location.hash);
      return;
    }
  }
}({{{choices}}}));


// Once the page is there, so that it never waits for the font service.
addEventListener('load', function () {
  var font = document.createElement('link');
  font.rel = 'stylesheet';
  font.href = '{{{fontAddress}}}';
  document.head.appendChild(font);
});
